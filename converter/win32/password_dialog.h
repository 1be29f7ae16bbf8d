#pragma once
// The password for a protected PDF, asked in a small dialog: entered twice, hidden while typed.

#include <optional>
#include <string>
#include <string_view>

namespace pl::converter::win32 {

// Nothing when the person cancelled.
std::optional<std::string> askPasswordDialog(std::string_view documentName);

} // namespace pl::converter::win32
