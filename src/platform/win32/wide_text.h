#pragma once
// UTF-8, the program's texts, and UTF-16, the system's own. The ANSI functions speak UTF-8 through
// the manifest's code page, but a few places convert by other rules (the clipboard's 8-bit text
// follows the keyboard's locale, not the code page) or count wrongly under some implementations
// (environment variables): there the wide functions are used with these conversions.

#include <string>
#include <string_view>

namespace pl::platform::win32 {

std::wstring widen(std::string_view utf8);
std::string narrow(std::wstring_view utf16);

} // namespace pl::platform::win32
