#pragma once
// The names and the title line of a print job in the spool folder. Pure text rules, kept apart from
// the file handling so that they can be read (and checked) on their own.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace pl::backend {

// The printing user's name as it may begin a job file's name, or nothing when it must not be used:
// empty, too long, beginning with "-", "." or "~" (an option, a hidden or a partial file), or holding
// "/", a wildcard or a control character. The name is never changed: an assistant finds its jobs by
// the exact user name, so a changed name would reach nobody.
std::optional<std::string> usableUserName(std::string_view user);

// The CUPS job number as ten digits, so that the names of one user's jobs sort in the order the jobs
// arrived; anything that is not a plain number counts as 0.
std::string jobNumber(std::string_view jobId);

// The complete job's name: "<user><number>.ps", and for a name that is taken "<user><number>_<n>.ps".
std::string finalJobName(std::string_view user, std::string_view number, int attempt);

// The name while the job is being written: "~" before the final name, which no assistant takes.
std::string partialJobName(std::string_view finalName);

// The "%%Title: " comment that carries the title the job was printed with to the assistant, without
// line breaks or other control characters and cut to a sane length at a character boundary; empty
// when there is no title to carry. `lineEnd` is the line end of the job's first line.
std::string titleLine(std::string_view title, std::string_view lineEnd);

// Where the job's first line ends (the index just after its line end) when the job is PostScript
// ("%!") and that line ends within `head`; otherwise nothing, and the job is written as it came.
std::optional<std::size_t> endOfFirstPostScriptLine(std::string_view head);

} // namespace pl::backend
