#pragma once
// Turns a raw document title into something usable as a file name: decodes the encodings in which
// applications write titles, removes application names and document extensions, and replaces
// characters that file names cannot hold.
//
// Every position and length here counts characters (code points), not bytes. Input bytes that are
// not valid UTF-8 stand for the Latin-1 character of the same code, as the job files are 8-bit text.

#include "base/errors.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pl::naming {

// Rewrites `title` in place. Errors go to `errors` with the tag "ParsePDFName.ParsePdfFileName"
// and the title as data; the title is then left as far as it got.
void ParsePdfFileName(std::string& title, ErrorSink& errors);

// A title is text up to its first NUL, as a text box shows it: cuts `title` there. Nothing behind
// it may reach a file name or a command line, where it would end the text or be refused.
void CutAtNul(std::string& title);

// PostScript hexadecimal strings <...> decoded; only the last group survives, with the text before
// it. Raises a type mismatch (13) for a pair that is not hexadecimal.
std::string DecodeHexString(std::string_view text);
// Protocol prefix, URL escapes and path tail removed. Traps its own errors ("ParsePDFName.URLDecode")
// and then returns the empty text; a text of 32767 characters or more overflows its position counter.
std::string URLDecode(std::string_view text, ErrorSink& errors);
// PostScript hexadecimal groups and octal escapes (\ooo) decoded. Traps its own errors
// ("psSpecialChar1.PsspecialChar") and then returns the empty text. Also cleans the user name that
// prefixes every job file.
std::string PsspecialChar(std::string_view text, ErrorSink& errors);
// Up to 7 decimal digit characters read as octal; raises overflow (6) past 32767, a type mismatch
// (13) for a character that is not a digit and subscript out of range (9) for an eighth digit.
std::int16_t OctalValue(std::string_view digits);

// `title` without the application names that title bars put around a document's name
// ("Microsoft Word - ", "Editor", ...), removed wherever they stand and in any letter case. One step
// of ParsePdfFileName; the name box applies it alone to pasted text.
std::string RemoveApplicationNames(std::string_view title);

} // namespace pl::naming
