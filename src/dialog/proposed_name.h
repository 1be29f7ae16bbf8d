#pragma once
// How the load sequence turns a job into the name it proposes, apart from reading the title.

#include <optional>
#include <string>
#include <string_view>

namespace pl::dialog {

// `text` with every space removed (other blanks stay).
std::string RemoveSpaces(std::string_view text);

// The profile a job file names after the marker "~profile~" ("Report~profile~Fax.ps" names "Fax"),
// without a trailing ".ps"; nothing when the name carries no marker.
std::optional<std::string> profileNamedByJob(std::string_view psFile);

// The title made fit for the name box: the parentheses of "(Invoice 7)" dropped, "()" emptied, the
// characters no file name may hold removed, and "Paperlark PDF" for what is left empty.
std::string cleanProposedName(std::string name);

} // namespace pl::dialog
