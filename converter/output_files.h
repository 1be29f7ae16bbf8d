#pragma once
// The files a conversion writes. Devices that write one file per page get an output name with a
// page number in printf style ("Report - %02d.png"), which Ghostscript expands itself; every other
// "%" in a name is an ordinary character and must be doubled, or Ghostscript would read it as a
// format.

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::converter {

struct PagePattern {
    std::string folder; // without a trailing separator
    std::string prefix; // the file name before the number
    int width = 0;      // at least this many digits, with leading zeros ("%02d": 2)
    std::string suffix; // the file name after the number
};

// The first "%d" or "%0Nd" in the file name part of `path` (an absolute path).
std::optional<PagePattern> findPagePattern(std::string_view path);

// The file of page `page` (1-based).
std::string pageFile(const PagePattern& pattern, int page);

// The pattern's files that exist now, by full path, with their modification times.
std::map<std::string, std::filesystem::file_time_type> existingPageFiles(const PagePattern& pattern);

// `path` with the number `n` before its extension, as free names are numbered: "Report (1).pdf".
std::string numberedPath(std::string_view path, int n);

// The hidden temporary file in which a result is written before it gets its name: named with the
// run's tag (run_marks.h) and a random part, so that a later run can recognise it when it was left.
std::string temporaryPath(std::string_view folder, std::string_view runTag, std::string_view random);
// Removes from `folder` the temporaries of runs that ended without removing them.
void removeStaleTemporaries(std::string_view folder);

// The value for Ghostscript's OutputFile: every "%" doubled except the page number of `pattern`
// (when there is one, it must be the one findPagePattern found in `path`).
std::string ghostscriptOutputFile(std::string_view path, bool keepPagePattern);

} // namespace pl::converter
