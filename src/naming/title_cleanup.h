#pragma once
// Turns a raw document title into something usable as a file name: decodes the encodings in which
// applications write titles, removes application names and document extensions, and replaces
// characters that file names cannot hold.

#include "base/errors.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pl::naming {

// Rewrites `title` in place. Errors go to `errors` with the tag "ParsePDFName.ParsePdfFileName";
// the title is then left as far as it got.
void ParsePdfFileName(std::string& title, ErrorSink& errors);

// PostScript hexadecimal strings <...> decoded; raises a run-time error for a pair that is not hex.
std::string DecodeHexString(std::string_view text);
// Protocol prefix, URL escapes and path tail removed. Traps its own errors ("ParsePDFName.URLDecode").
std::string URLDecode(std::string_view text, ErrorSink& errors);
// PostScript escapes decoded. Traps its own errors ("psSpecialChar1.PsspecialChar"). Also cleans
// the user name that prefixes every job file.
std::string PsspecialChar(std::string_view text, ErrorSink& errors);
// Octal digits to a 16-bit value; raises overflow (6) past 32767.
std::int16_t OctalValue(std::string_view digits);

} // namespace pl::naming
