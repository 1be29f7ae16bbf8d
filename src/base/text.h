#pragma once
// Character-level text helpers. Text is UTF-8 everywhere inside the program; procedures that count
// "characters" (cut at position 170, the third character, ...) work on decoded code points.

#include <string>
#include <string_view>

namespace pl::text {

// Decodes UTF-8. A byte that does not start a valid sequence stands for the character of the same
// code (Latin-1), so bytes from old 8-bit files survive a round trip unharmed.
std::u32string decode(std::string_view utf8);
std::string encode(std::u32string_view chars);
std::string encode(char32_t c);

// Text read from a file that may come from an 8-bit Windows editor: the bytes as they are when
// they are valid UTF-8 throughout, else every byte as its Latin-1 character. Deciding for the
// whole file, not per byte, keeps an 8-bit file's letter pairs from passing for UTF-8.
std::string fromFileBytes(std::string_view bytes);

// Every line followed by CR LF, whatever ended it (CR LF, LF or CR alone, or the end of the text),
// as the classic line-by-line reading joined lines.
std::string crlfLines(std::string_view text);

// Number of characters (code points) in a UTF-8 text, counted as decode() would.
std::size_t length(std::string_view utf8);

// Lower and upper case for ASCII and Latin-1 letters; everything else is returned unchanged.
char32_t toLower(char32_t c);
char32_t toUpper(char32_t c);
std::u32string toLower(std::u32string_view s);
std::string toLower(std::string_view utf8);
std::string toUpper(std::string_view utf8);

// Comparisons and searches that ignore letter case (as toLower defines it).
bool iequals(std::string_view a, std::string_view b);
bool istartsWith(std::string_view text, std::string_view prefix);
bool iendsWith(std::string_view text, std::string_view suffix);
// Byte offset of the first case-blind match at or after byte offset `from`, or npos.
std::size_t ifind(std::string_view text, std::string_view what, std::size_t from = 0);
bool icontains(std::string_view text, std::string_view what);

// Replaces every occurrence of `what` in one pass from left to right; an empty `what` changes nothing.
std::string replaceAll(std::string_view text, std::string_view what, std::string_view with);
std::string ireplaceAll(std::string_view text, std::string_view what, std::string_view with);

// Blanks (U+0020 only, as the classic Trim does) removed at either end.
std::string_view trimBlanks(std::string_view s);

// Decimal text of a whole number, as the classic CStr gives it.
std::string number(long long n);

} // namespace pl::text
