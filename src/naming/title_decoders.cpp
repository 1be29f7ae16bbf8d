// The decoders that the title clean-up runs before it touches names and extensions: PostScript
// hexadecimal strings, URL escapes and PostScript octal escapes. They work on characters, since
// titles carry umlauts and the rules count positions in characters.

#include "base/text.h"
#include "naming/title_cleanup.h"

#include <algorithm>
#include <array>

namespace pl::naming {

namespace {

using Chars = std::u32string;
using CharsView = std::u32string_view;
constexpr auto npos = Chars::npos;

int hexDigit(char32_t c) {
    if (c >= U'0' && c <= U'9')
        return static_cast<int>(c - U'0');
    if (c >= U'a' && c <= U'f')
        return static_cast<int>(c - U'a') + 10;
    if (c >= U'A' && c <= U'F')
        return static_cast<int>(c - U'A') + 10;
    return -1;
}

bool isDecimalDigit(char32_t c) {
    return c >= U'0' && c <= U'9';
}
bool isOctalDigit(char32_t c) {
    return c >= U'0' && c <= U'7';
}

// The value of a "&H" hexadecimal conversion: anything but hexadecimal digits is a type mismatch,
// as it is for the run-time's conversion that the titles were always decoded with.
unsigned hexValue(CharsView digits) {
    if (digits.empty())
        raise(err::TypeMismatch);
    unsigned value = 0;
    for (char32_t c : digits) {
        const int d = hexDigit(c);
        if (d < 0)
            raise(err::TypeMismatch);
        value = value * 16 + static_cast<unsigned>(d);
    }
    return value;
}

// Hexadecimal groups between "<" and ">". Applications write titles as UTF-16 big-endian strings
// <FEFF0041...>; a unit with a zero high byte becomes its low byte's character, any other unit
// becomes two characters. Each group replaces what the earlier ones decoded, so of several groups
// only the last survives together with the text before it: titles have always come out that way
// and users' naming habits depend on it.
Chars decodeHexGroups(CharsView text) {
    Chars result;
    std::size_t cur = 0;
    for (;;) {
        const std::size_t open = text.find(U'<', cur);
        if (open == npos || text.find(U'>', cur) == npos) {
            result.append(text.substr(cur));
            return result;
        }
        result.assign(text.substr(cur, open - cur));
        cur = open + 1;
        // Pairs are taken while the first ">" still lies at least two characters ahead.
        std::size_t close = text.find(U'>', cur);
        while (close != npos && close >= cur + 2) {
            const std::size_t pairStart = cur;
            cur += 2;
            unsigned value = hexValue(text.substr(pairStart, 2));
            if (value == 0) {
                cur = std::min(cur + 2, text.size());
                value = hexValue(text.substr(pairStart, cur - pairStart));
            }
            result.push_back(static_cast<char32_t>(value));
            if (close < cur) // the four-digit unit swallowed the ">"
                close = text.find(U'>', cur);
        }
        if (cur < text.size() && text[cur] == U'>')
            ++cur;
    }
}

// Every occurrence of `what`, case-sensitive, in one pass from left to right.
Chars replaceAllChars(CharsView text, CharsView what, CharsView with) {
    Chars out;
    std::size_t pos = 0;
    for (std::size_t hit; (hit = text.find(what, pos)) != npos; pos = hit + what.size()) {
        out.append(text.substr(pos, hit - pos));
        out.append(with);
    }
    out.append(text.substr(pos));
    return out;
}

// Drops everything up to and including the first case-blind occurrence of `prefix`.
void dropThrough(Chars& text, std::u32string_view prefix) {
    const std::size_t hit = text::toLower(text).find(prefix);
    if (hit != npos)
        text.erase(0, hit + prefix.size());
}

// The URL walk's position counter is a 16-bit integer; moving it past 32767 overflows.
void advance(int& position, int by) {
    position += by;
    if (position > 32767)
        raise(err::Overflow);
}

Chars urlDecode(Chars text) {
    dropThrough(text, U"file://");
    dropThrough(text, U"http://");
    dropThrough(text, U"ftp://");

    Chars out;
    const auto length = static_cast<long long>(text.size());
    int position = 1;
    while (position <= length) {
        const char32_t c = text[static_cast<std::size_t>(position - 1)];
        if (c == U'+') {
            out.push_back(U' ');
        } else if (c == U'%' && position + 2 <= length && isDecimalDigit(text[static_cast<std::size_t>(position)]) &&
                   isDecimalDigit(text[static_cast<std::size_t>(position + 1)])) {
            const char32_t high = text[static_cast<std::size_t>(position)];
            const char32_t low = text[static_cast<std::size_t>(position + 1)];
            // Only escapes from "%32" on are decoded, and then as hexadecimal: "%20" stays as it
            // stands (a blank would be trimmed away) while "%41" becomes "A".
            if ((high - U'0') * 10 + (low - U'0') >= 32) {
                out.push_back(static_cast<char32_t>((high - U'0') * 16 + (low - U'0')));
                advance(position, 3);
                continue;
            }
            out.push_back(U'%');
        } else {
            out.push_back(c);
        }
        advance(position, 1);
    }
    // What follows the host or the first folder is a path, not a title.
    const std::size_t slash = out.find(U'/');
    if (slash != npos && slash > 0)
        out.erase(slash);
    return out;
}

Chars decodeOctalEscapes(Chars text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != U'\\' || i + 3 >= text.size() || !isOctalDigit(text[i + 1]) || !isOctalDigit(text[i + 2]) ||
            !isOctalDigit(text[i + 3]))
            continue;
        const Chars escape = text.substr(i, 4);
        const auto code = OctalValue(text::encode(CharsView(escape).substr(1)));
        text = replaceAllChars(text, escape, Chars(1, static_cast<char32_t>(code)));
    }
    return text;
}

} // namespace

std::string DecodeHexString(std::string_view text) {
    return text::encode(decodeHexGroups(text::decode(text)));
}

std::string URLDecode(std::string_view text, ErrorSink& errors) {
    try {
        return text::encode(urlDecode(text::decode(text)));
    } catch (...) {
        errors.report("ParsePDFName.URLDecode", "", currentError(), text);
        return {};
    }
}

std::string PsspecialChar(std::string_view text, ErrorSink& errors) {
    try {
        return text::encode(decodeOctalEscapes(decodeHexGroups(text::decode(text))));
    } catch (...) {
        errors.report("psSpecialChar1.PsspecialChar", "", currentError(), text);
        return {};
    }
}

std::int16_t OctalValue(std::string_view digits) {
    static constexpr std::array<long, 7> weights{1, 8, 64, 512, 4096, 32768, 262144};
    const std::u32string chars = text::decode(digits);
    long sum = 0;
    for (std::size_t k = 0; k < chars.size(); ++k) {
        const char32_t c = chars[chars.size() - 1 - k];
        if (!isDecimalDigit(c))
            raise(err::TypeMismatch);
        if (k >= weights.size())
            raise(err::SubscriptOutOfRange);
        sum += static_cast<long>(c - U'0') * weights[k];
    }
    if (sum > 32767)
        raise(err::Overflow);
    return static_cast<std::int16_t>(sum);
}

} // namespace pl::naming
