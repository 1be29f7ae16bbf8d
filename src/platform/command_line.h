#pragma once
// Windows command-line words. Programs are started from one command line, as on Windows; on POSIX
// the line is split here and the words are handed to the program directly, never to a shell, so
// nothing inside a title, file name or profile name can run anything.

#include <string>
#include <string_view>
#include <vector>

namespace pl::platform {

// Splits a command line as CommandLineToArgvW does: blanks and tabs separate words; double quotes
// group; 2n backslashes before a quote give n backslashes and the quote toggles quoting; 2n+1 give
// n backslashes and a literal quote; other backslashes are literal; "" inside a quoted word gives a
// literal quote. The first word (the program) follows the simpler program-name rule.
std::vector<std::string> splitCommandLine(std::string_view commandLine);

// One word quoted so that splitCommandLine gives it back unchanged.
std::string quoteArgument(std::string_view word);

} // namespace pl::platform
