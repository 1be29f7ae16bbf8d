#pragma once

#include <optional>
#include <string>

namespace pl::test {

// Sets the process's environment variable `name`, or removes it with nothing. Defined once per
// operating system.
void setVariable(const std::string& name, const std::optional<std::string>& value);

} // namespace pl::test
