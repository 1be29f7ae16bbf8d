#pragma once
// The reading of a language file's content, without any file access: how its bytes become text,
// where the assistant's own section lies in it, and how one numbered text is found there.
//
// A language file serves several programs of the suite, each in a section of its own:
//
//     [plAssist.exe]
//     text_3: Veuillez choisir :
//     text_21: BOT
//     first line
//     second line
//     EOT
//     EOF
//     [plConfig.exe]
//     ...

#include <optional>
#include <string>
#include <string_view>

namespace pl::texts {

// The file's bytes as text: UTF-8 when the whole file is valid UTF-8 (a leading byte-order mark is
// dropped), else every byte read as the Latin-1 character of the same code, as old 8-bit files are
// written. Whatever line ends the file uses (CR LF, LF or CR alone), every line of the result ends
// in "\r\n", so that the texts look alike on every platform.
std::string decodeLanguageFile(std::string_view bytes);

// The assistant's section of the decoded text: from the header "[plAssist.exe]" (found without
// regard to case) up to, not including, the first later line that ends it. A line ends the section
// when, without surrounding blanks and tabs, it is "EOF" in any case (the suite's end mark) or
// begins with "[" and ends with "]" (the next program's header, in case the end mark was
// forgotten). Nothing when the file has no such header.
std::optional<std::string> assistantSection(std::string_view text);

// Text `number` as `section` writes it after the key "text_<number>:" (key found without regard
// to case, the text keeps its own), trimmed of blanks; nothing when the key is absent. A text
// starting with "BOT" right behind the colon spans lines: it starts after "BOT" and one more
// character (a whole line end when the line ends there) and runs up to the next "EOT", without the
// line end just before it; without an "EOT" the file is defect and a run-time error is raised. Any
// other text ends at its line's end.
std::optional<std::string> findText(std::string_view section, int number);

} // namespace pl::texts
