#include "base/text.h"

namespace pl::text {

namespace {

// Length of the valid UTF-8 sequence starting at s[i], or 0 when the byte does not start one.
std::size_t sequenceLength(std::string_view s, std::size_t i, char32_t& out) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) {
        out = b0;
        return 1;
    }
    std::size_t len = 0;
    char32_t cp = 0;
    char32_t min = 0;
    if ((b0 & 0xE0) == 0xC0) {
        len = 2, cp = b0 & 0x1F, min = 0x80;
    } else if ((b0 & 0xF0) == 0xE0) {
        len = 3, cp = b0 & 0x0F, min = 0x800;
    } else if ((b0 & 0xF8) == 0xF0) {
        len = 4, cp = b0 & 0x07, min = 0x10000;
    } else {
        return 0;
    }
    if (i + len > s.size())
        return 0;
    for (std::size_t k = 1; k < len; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (b & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
        return 0;
    out = cp;
    return len;
}

} // namespace

std::u32string decode(std::string_view utf8) {
    std::u32string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        char32_t cp = 0;
        const std::size_t len = sequenceLength(utf8, i, cp);
        if (len == 0) {
            out.push_back(static_cast<unsigned char>(utf8[i]));
            ++i;
        } else {
            out.push_back(cp);
            i += len;
        }
    }
    return out;
}

std::string encode(char32_t c) {
    std::string out;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
    return out;
}

std::string encode(std::u32string_view chars) {
    std::string out;
    out.reserve(chars.size());
    for (char32_t c : chars)
        out += encode(c);
    return out;
}

std::string fromFileBytes(std::string_view bytes) {
    bool valid = true;
    for (std::size_t i = 0; i < bytes.size() && valid;) {
        char32_t cp = 0;
        const std::size_t len = sequenceLength(bytes, i, cp);
        valid = len != 0;
        i += len;
    }
    if (valid)
        return std::string(bytes);
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes)
        out += encode(static_cast<char32_t>(static_cast<unsigned char>(c)));
    return out;
}

std::string crlfLines(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t end = text.find_first_of("\r\n", pos);
        if (end == std::string_view::npos) {
            out.append(text.substr(pos)).append("\r\n");
            break;
        }
        out.append(text.substr(pos, end - pos)).append("\r\n");
        pos = end + 1;
        if (text[end] == '\r' && pos < text.size() && text[pos] == '\n')
            ++pos;
    }
    return out;
}

std::size_t length(std::string_view utf8) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < utf8.size(); ++n) {
        char32_t cp = 0;
        const std::size_t len = sequenceLength(utf8, i, cp);
        i += len == 0 ? 1 : len;
    }
    return n;
}

char32_t toLower(char32_t c) {
    if ((c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7))
        return c + 32;
    return c;
}

char32_t toUpper(char32_t c) {
    if ((c >= U'a' && c <= U'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7))
        return c - 32;
    return c;
}

std::u32string toLower(std::u32string_view s) {
    std::u32string out(s);
    for (auto& c : out)
        c = toLower(c);
    return out;
}

namespace {

// Maps every decodable character through `map`; a stray byte keeps its spelling, so that folding
// never changes the bytes of anything that is not a letter.
template <class Map> std::string mapCase(std::string_view utf8, Map map) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        char32_t cp = 0;
        const std::size_t len = sequenceLength(utf8, i, cp);
        if (len == 0) {
            out.push_back(utf8[i]);
            ++i;
        } else if (cp < 0x80) {
            out.push_back(static_cast<char>(map(cp)));
            ++i;
        } else {
            out += encode(map(cp));
            i += len;
        }
    }
    return out;
}

} // namespace

std::string toLower(std::string_view utf8) {
    return mapCase(utf8, [](char32_t c) { return toLower(c); });
}

std::string toUpper(std::string_view utf8) {
    return mapCase(utf8, [](char32_t c) { return toUpper(c); });
}

bool iequals(std::string_view a, std::string_view b) {
    return toLower(a) == toLower(b);
}

bool istartsWith(std::string_view text, std::string_view prefix) {
    return toLower(text).starts_with(toLower(prefix));
}

bool iendsWith(std::string_view text, std::string_view suffix) {
    return toLower(text).ends_with(toLower(suffix));
}

// Case folding keeps the byte length of every character (Latin-1 letters stay two bytes, the
// others are untouched), so offsets into the folded text are offsets into the original.
std::size_t ifind(std::string_view text, std::string_view what, std::size_t from) {
    if (from > text.size())
        return std::string_view::npos;
    return toLower(text).find(toLower(what), from);
}

bool icontains(std::string_view text, std::string_view what) {
    return ifind(text, what) != std::string_view::npos;
}

std::string replaceAll(std::string_view text, std::string_view what, std::string_view with) {
    if (what.empty())
        return std::string(text);
    std::string out;
    std::size_t pos = 0;
    for (std::size_t hit; (hit = text.find(what, pos)) != std::string_view::npos; pos = hit + what.size()) {
        out.append(text.substr(pos, hit - pos));
        out.append(with);
    }
    out.append(text.substr(pos));
    return out;
}

std::string ireplaceAll(std::string_view text, std::string_view what, std::string_view with) {
    if (what.empty())
        return std::string(text);
    const std::string folded = toLower(text);
    const std::string key = toLower(what);
    std::string out;
    std::size_t pos = 0;
    for (std::size_t hit; (hit = folded.find(key, pos)) != std::string::npos; pos = hit + key.size()) {
        out.append(text.substr(pos, hit - pos));
        out.append(with);
    }
    out.append(text.substr(pos));
    return out;
}

std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ')
        s.remove_suffix(1);
    return s;
}

std::string number(long long n) {
    return std::to_string(n);
}

} // namespace pl::text
