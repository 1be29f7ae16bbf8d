#pragma once
// The repairs that give an output name the extension of the current output format. They differ on
// purpose, and each is used where it always was: the Save button repairs the chosen path, the
// automatic save checks a fixed four-character ending, Desktop and E-mail repair the name box, and
// CheckSuffix is called by Desktop and E-mail on a copy that nobody reads again.

#include <string>
#include <string_view>

namespace pl::dialog {

// Name used for an empty name box by Desktop and E-mail.
inline constexpr std::string_view EmptyNameBoxName = "Paperlark_XP PDF";

// The automatic save's repair, in place: blanks trimmed; a name longer than three characters whose
// last four characters, in lower case, differ from `outputSuffix` gets the suffix appended (always
// four, whatever the suffix's length, so ".ps" is appended to "x.ps" again); a shorter name gets it
// appended too; an empty name becomes "Paperlark File" + suffix.
void CheckForPdfExt(std::string& name, std::string_view outputSuffix);

// Desktop's and E-mail's check, in place: with an output suffix, the name is trimmed, an empty one
// becomes "Paperlark_XP Created File", and the suffix is appended unless the name's tail equals it.
// The tail is taken one character longer than the suffix, so the suffix is in fact always appended
// ("report.pdf" gives "report.pdf.pdf"). The callers work on a copy and drop it.
void CheckSuffix(std::string& name, std::string_view outputSuffix);

// Desktop's and E-mail's suffix repair of the name box: the last characters (as many as the suffix
// has) compared in lower case with the suffix; the name with them cut off, or the whole name when
// they differ, followed by the page pattern and the suffix.
std::string repairNameBoxSuffix(std::string_view name, std::string_view outputSuffix, std::string_view pagePattern);

// Save's repair of the chosen path: the same, but only for a path longer than the suffix; a shorter
// one is left alone (".pdf" stays ".pdf").
std::string repairSavedPathSuffix(std::string_view path, std::string_view outputSuffix, std::string_view pagePattern);

// Number of characters (not bytes) of `text`.
std::size_t characters(std::string_view text);

} // namespace pl::dialog
