#pragma once

#include <string>
#include <vector>

namespace pl::converter {

// The whole converter, given the words of its command line after the program name (UTF-8).
// Returns the exit code: 0 done, 1 failed (every input kept), 2 bad command line (nothing touched).
int converterMain(const std::vector<std::string>& args);

} // namespace pl::converter
