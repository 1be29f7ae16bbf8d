#pragma once
// UTF-8 inside the converter, UTF-16 at the Windows API.

#include <string>
#include <string_view>

namespace pl::converter::win32 {

std::wstring wide(std::string_view utf8);
std::string narrow(std::wstring_view text);
// The text in the system's ANSI code page, for the few interfaces that have no wide form.
std::string ansi(std::string_view utf8);

} // namespace pl::converter::win32
