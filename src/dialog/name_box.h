#pragma once
// The rules that keep the name box usable as a file name. Two character sets, deliberately
// different: a name derived from the job loses the per cent sign too, while the user may type one.

#include <string>
#include <string_view>

namespace pl::dialog {

// Removed from a derived name: per cent, colon, asterisk, bar, less, greater, exclamation mark,
// question mark, double quote, slash, backslash.
inline constexpr std::string_view LoadTimeForbidden = "%:*|<>!?\"/\\";
// Refused while typing: the same without the per cent sign.
inline constexpr std::string_view TypingForbidden = ":*|<>!?\"/\\";

// `name` with every character of LoadTimeForbidden removed; nothing is put in their place.
std::string ValidFileName(std::string_view name);

// Whether the typed character `keyAscii` is swallowed by the name box.
bool refusedWhileTyping(int keyAscii);

} // namespace pl::dialog
