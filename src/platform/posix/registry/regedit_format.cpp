#include "platform/posix/registry/regedit_format.h"

#include "base/text.h"

#include <array>
#include <functional>

namespace pl::platform::posix {

namespace {

constexpr std::string_view Version5Header = "Windows Registry Editor Version 5.00";
constexpr std::string_view Version4Header = "REGEDIT4";

constexpr std::array<std::pair<RootKey, std::string_view>, 7> rootNames{{
    {HKEY_CLASSES_ROOT, "HKEY_CLASSES_ROOT"},
    {HKEY_CURRENT_USER, "HKEY_CURRENT_USER"},
    {HKEY_LOCAL_MACHINE, "HKEY_LOCAL_MACHINE"},
    {HKEY_USERS, "HKEY_USERS"},
    {HKEY_PERFORMANCE_DATA, "HKEY_PERFORMANCE_DATA"},
    {HKEY_CURRENT_CONFIG, "HKEY_CURRENT_CONFIG"},
    {HKEY_DYN_DATA, "HKEY_DYN_DATA"},
}};

bool isTextType(std::uint32_t type) {
    return type == regtype::Sz || type == regtype::ExpandSz || type == regtype::MultiSz;
}

// ---- encodings ----------------------------------------------------------------------------------

// UTF-16LE code units to UTF-8. A lone surrogate becomes U+FFFD; an odd last byte stands for the
// character of its own code, so nothing the file holds is silently dropped.
std::string utf16leToUtf8(std::string_view bytes) {
    std::u32string chars;
    chars.reserve(bytes.size() / 2 + 1);
    const std::size_t units = bytes.size() / 2;
    auto unit = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                     (static_cast<unsigned char>(bytes[2 * i + 1]) << 8));
    };
    for (std::size_t i = 0; i < units; ++i) {
        const char32_t u = unit(i);
        if (u >= 0xD800 && u <= 0xDBFF && i + 1 < units && unit(i + 1) >= 0xDC00 && unit(i + 1) <= 0xDFFF) {
            chars.push_back(0x10000 + ((u - 0xD800) << 10) + (unit(i + 1) - 0xDC00));
            ++i;
        } else if (u >= 0xD800 && u <= 0xDFFF) {
            chars.push_back(0xFFFD);
        } else {
            chars.push_back(u);
        }
    }
    if (bytes.size() % 2 != 0)
        chars.push_back(static_cast<unsigned char>(bytes.back()));
    return text::encode(chars);
}

std::vector<std::uint8_t> utf8ToUtf16le(std::string_view utf8) {
    std::vector<std::uint8_t> out;
    out.reserve(utf8.size() * 2);
    auto put = [&](char32_t u) {
        out.push_back(static_cast<std::uint8_t>(u & 0xFF));
        out.push_back(static_cast<std::uint8_t>((u >> 8) & 0xFF));
    };
    for (char32_t c : text::decode(utf8)) {
        if (c >= 0x10000) {
            put(0xD800 + ((c - 0x10000) >> 10));
            put(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            put(c);
        }
    }
    return out;
}

// Whether `bytes` is valid UTF-8 already (the usual case), so that it needs no copy: every sequence
// one that text::decode takes as a whole character (the same rules: no overlong forms, no
// surrogates, nothing above U+10FFFF).
bool isValidUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto b0 = static_cast<unsigned char>(bytes[i]);
        if (b0 < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        char32_t cp = 0, min = 0;
        if ((b0 & 0xE0) == 0xC0)
            length = 2, cp = b0 & 0x1F, min = 0x80;
        else if ((b0 & 0xF0) == 0xE0)
            length = 3, cp = b0 & 0x0F, min = 0x800;
        else if ((b0 & 0xF8) == 0xF0)
            length = 4, cp = b0 & 0x07, min = 0x10000;
        else
            return false;
        if (i + length > bytes.size())
            return false;
        for (std::size_t k = 1; k < length; ++k) {
            const auto b = static_cast<unsigned char>(bytes[i + k]);
            if ((b & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (b & 0x3F);
        }
        if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        i += length;
    }
    return true;
}

// Valid UTF-8 from any bytes: a byte that does not start a valid sequence is the character of its code.
std::string normalized(std::string_view bytes) {
    if (isValidUtf8(bytes))
        return std::string(bytes);
    return text::encode(text::decode(bytes));
}

// The whole file as UTF-8 text, whatever encoding it came in: a view of `bytes` when they are
// UTF-8 already, else a converted copy kept in `converted`.
std::string_view fileText(std::string_view bytes, std::string& converted) {
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
        static_cast<unsigned char>(bytes[1]) == 0xFE)
        return converted = utf16leToUtf8(bytes.substr(2));
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    if (isValidUtf8(bytes))
        return bytes;
    return converted = text::encode(text::decode(bytes));
}

// ---- parsing ------------------------------------------------------------------------------------

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimLeft(std::string_view s) {
    while (!s.empty() && isBlank(s.front()))
        s.remove_prefix(1);
    return s;
}

std::string_view trimRight(std::string_view s) {
    while (!s.empty() && isBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

// The lines of a text, one at a time (a hive may be large; no list of them is made).
class Lines {
public:
    explicit Lines(std::string_view text) : rest_(text) {}
    bool atEnd() const { return done_; }
    // The next line without its line end; false after the last one.
    bool next(std::string_view& line) {
        if (done_)
            return false;
        const std::size_t end = rest_.find('\n');
        line = rest_.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (end == std::string_view::npos || end + 1 == rest_.size())
            done_ = true;
        else
            rest_.remove_prefix(end + 1);
        ++number_;
        return true;
    }
    // 1-based number of the line last returned.
    std::size_t number() const { return number_; }

private:
    std::string_view rest_;
    std::size_t number_ = 0;
    bool done_ = false;
};

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// 1 to `maxDigits` hexadecimal digits, nothing else.
bool parseHexNumber(std::string_view s, std::size_t maxDigits, std::uint32_t& out) {
    if (s.empty() || s.size() > maxDigits)
        return false;
    out = 0;
    for (char c : s) {
        const int d = hexDigit(c);
        if (d < 0)
            return false;
        out = (out << 4) | static_cast<std::uint32_t>(d);
    }
    return true;
}

struct ParseFailure {
    std::string message;
};

class Parser {
public:
    explicit Parser(std::string_view text) : lines_(text) {}

    // Hands each section to `visit` as soon as it is complete; false stops the parse there.
    std::optional<RegFileError> run(const std::function<bool(RegFileKey&)>& visit) {
        try {
            std::optional<RegFileKey> section;
            readHeader();
            std::string_view raw;
            while (lines_.next(raw)) {
                const std::string_view line = trimLeft(raw);
                if (trimRight(line).empty() || line.front() == ';')
                    continue;
                if (line.front() == '[') {
                    if (section && !visit(*section))
                        return std::nullopt;
                    section = parseKeyLine(trimRight(line));
                } else if (line.front() == '"' || line.front() == '@') {
                    if (!section)
                        throw ParseFailure{"value line before the first [key] line"};
                    section->values.push_back(parseValueLine(line));
                } else
                    throw ParseFailure{"neither a [key] line, a value line nor a ; comment"};
            }
            if (section)
                visit(*section);
        } catch (const ParseFailure& failure) {
            return RegFileError{lines_.number(), failure.message};
        }
        return std::nullopt;
    }

private:
    void readHeader() {
        std::string_view line;
        std::string_view header;
        while (lines_.next(line)) {
            header = trimRight(trimLeft(line));
            if (!header.empty())
                break;
        }
        if (header.empty())
            return; // an empty file is an empty registry file
        if (header == Version4Header)
            version4_ = true;
        else if (header != Version5Header)
            throw ParseFailure{"the first line must be \"Windows Registry Editor Version 5.00\" or \"REGEDIT4\""};
    }

    RegFileKey parseKeyLine(std::string_view line) {
        if (!line.ends_with(']'))
            throw ParseFailure{"a [key] line must end with ]"};
        std::string_view path = line.substr(1, line.size() - 2);
        RegFileKey key;
        key.line = lines_.number();
        if (path.starts_with('-')) {
            key.remove = true;
            path.remove_prefix(1);
        }
        const std::size_t sep = path.find('\\');
        key.root = rootFromLongName(path.substr(0, sep));
        if (key.root == 0)
            throw ParseFailure{"unknown root key \"" + std::string(path.substr(0, sep)) + "\""};
        if (sep != std::string_view::npos) {
            std::string_view sub = path.substr(sep + 1);
            if (sub.ends_with('\\')) // as regedit, a trailing "\" is tolerated
                sub.remove_suffix(1);
            if (!isWritableKeyPath(sub))
                throw ParseFailure{"empty key name in the key path"};
            key.subKey = std::string(sub);
        }
        return key;
    }

    // A quoted name or string starting at line[pos] == '"'; `pos` ends behind the closing quote.
    // Only \\ and \" are escapes; any other backslash stands for itself, as regedit has it.
    std::string parseQuoted(std::string_view line, std::size_t& pos) {
        std::string out;
        for (++pos; pos < line.size(); ++pos) {
            const char c = line[pos];
            if (c == '"') {
                ++pos;
                return out;
            }
            if (c == '\\' && pos + 1 < line.size() && (line[pos + 1] == '\\' || line[pos + 1] == '"'))
                ++pos;
            out += line[pos];
        }
        throw ParseFailure{"missing closing \""};
    }

    RegFileValue parseValueLine(std::string_view line) {
        RegFileValue value;
        std::size_t pos = 0;
        if (line.front() == '@')
            pos = 1;
        else
            value.name = parseQuoted(line, pos);
        std::string_view rest = trimLeft(line.substr(pos));
        if (!rest.starts_with('='))
            throw ParseFailure{"= expected after the value name"};
        rest = trimLeft(rest.substr(1));
        if (trimRight(rest) == "-") {
            value.remove = true;
        } else if (rest.starts_with('"')) {
            std::size_t at = 0;
            const std::string data = parseQuoted(rest, at);
            if (!trimRight(rest.substr(at)).empty())
                throw ParseFailure{"unexpected text after the closing \""};
            value.type = regtype::Sz;
            value.data.reserve(data.size() + 1); // exactly: a large hive holds many of these
            value.data.assign(data.begin(), data.end());
            value.data.push_back(0);
        } else if (text::istartsWith(rest, "dword:")) {
            std::uint32_t number = 0;
            if (!parseHexNumber(trimRight(rest.substr(6)), 8, number))
                throw ParseFailure{"dword: needs 1 to 8 hexadecimal digits"};
            value.type = regtype::Dword;
            for (int i = 0; i < 4; ++i)
                value.data.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
        } else if (text::istartsWith(rest, "hex")) {
            parseHexValue(rest.substr(3), value);
        } else {
            throw ParseFailure{"value data must be \"text\", dword:, hex: or -"};
        }
        return value;
    }

    void parseHexValue(std::string_view rest, RegFileValue& value) {
        value.type = regtype::Binary;
        if (rest.starts_with('(')) {
            const std::size_t close = rest.find(')');
            if (close == std::string_view::npos || !parseHexNumber(rest.substr(1, close - 1), 8, value.type))
                throw ParseFailure{"hex(N): needs a hexadecimal type number"};
            rest.remove_prefix(close + 1);
        }
        if (!rest.starts_with(':'))
            throw ParseFailure{": expected after hex"};
        // Long data continues on the next lines, each line but the last ending in "\".
        std::string list(trimRight(rest.substr(1)));
        std::string_view more;
        while (list.ends_with('\\')) {
            list.pop_back();
            if (!lines_.next(more))
                break;
            list += trimRight(trimLeft(more));
        }
        std::string bytes;
        std::string_view items = list;
        while (!trimLeft(items).empty()) {
            const std::size_t comma = items.find(',');
            const std::string_view item = trimRight(trimLeft(items.substr(0, comma)));
            std::uint32_t b = 0;
            if (!parseHexNumber(item, 2, b))
                throw ParseFailure{"hex data must be bytes of two hexadecimal digits separated by commas"};
            bytes += static_cast<char>(b);
            if (comma == std::string_view::npos)
                break;
            items.remove_prefix(comma + 1);
        }
        if (isTextType(value.type))
            bytes = version4_ ? normalized(bytes) : utf16leToUtf8(bytes);
        value.data.assign(bytes.begin(), bytes.end());
    }

    Lines lines_;
    bool version4_ = false;
};

// ---- writing ------------------------------------------------------------------------------------

constexpr std::size_t HexLineWidth = 80;

std::string quoted(std::string_view s) {
    std::string out = "\"";
    for (char c : normalized(s)) {
        if (c == '\\' || c == '"')
            out += '\\';
        out += c;
    }
    out += '"';
    return out;
}

// A REG_SZ goes in quotes when it is one line of text ending in its NUL; anything else (no NUL,
// inner NULs, line breaks) is written as hex(1) so that it reads back byte for byte.
bool fitsInQuotes(const RegFileValue& value) {
    const auto& d = value.data;
    if (d.empty() || d.back() != 0)
        return false;
    for (std::size_t i = 0; i + 1 < d.size(); ++i)
        if (d[i] == 0 || d[i] == '\n' || d[i] == '\r')
            return false;
    return true;
}

void writeHex(std::string& out, std::size_t lineStart, const std::vector<std::uint8_t>& bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        out += digits[bytes[i] >> 4];
        out += digits[bytes[i] & 0xF];
        if (i + 1 == bytes.size())
            break;
        out += ',';
        // Break like regedit: the continued line starts with two blanks.
        if (out.size() - lineStart >= HexLineWidth - 4) {
            out += "\\\n  ";
            lineStart = out.size() - 2;
        }
    }
}

void writeValue(std::string& out, const RegFileValue& value) {
    const std::size_t lineStart = out.size();
    out += value.name.empty() ? std::string("@") : quoted(value.name);
    out += '=';
    if (value.remove) {
        out += '-';
    } else if (value.type == regtype::Sz && fitsInQuotes(value)) {
        out += quoted(std::string_view(reinterpret_cast<const char*>(value.data.data()), value.data.size() - 1));
    } else if (value.type == regtype::Dword && value.data.size() == 4) {
        static constexpr char digits[] = "0123456789abcdef";
        out += "dword:";
        for (int i = 3; i >= 0; --i) {
            out += digits[value.data[i] >> 4];
            out += digits[value.data[i] & 0xF];
        }
    } else {
        if (value.type == regtype::Binary) {
            out += "hex:";
        } else {
            static constexpr char digits[] = "0123456789abcdef";
            std::string type;
            for (std::uint32_t t = value.type; t != 0; t >>= 4)
                type.insert(type.begin(), digits[t & 0xF]);
            out += "hex(" + (type.empty() ? std::string("0") : type) + "):";
        }
        if (isTextType(value.type)) {
            const std::string_view textData(reinterpret_cast<const char*>(value.data.data()), value.data.size());
            writeHex(out, lineStart, utf8ToUtf16le(textData));
        } else {
            writeHex(out, lineStart, value.data);
        }
    }
    out += '\n';
}

} // namespace

RegFileParse parseRegFile(std::string_view bytes) {
    RegFileParse result;
    RegFile file;
    if (auto error = parseRegFileSections(bytes, [&](RegFileKey& key) {
            file.keys.push_back(std::move(key));
            return true;
        }))
        result.error = std::move(*error);
    else
        result.file = std::move(file);
    return result;
}

std::optional<RegFileError> parseRegFileSections(std::string_view bytes,
                                                 const std::function<bool(RegFileKey&)>& visit) {
    std::string converted;
    return Parser(fileText(bytes, converted)).run(visit);
}

std::string regFileHeader() {
    return std::string(Version5Header) + "\n\n";
}

void writeRegFileSection(std::string& out, const RegFileKey& key) {
    out += key.remove ? "[-" : "[";
    out += normalized(rootLongName(key.root));
    if (!key.subKey.empty()) {
        out += '\\';
        out += normalized(key.subKey);
    }
    out += "]\n";
    for (const RegFileValue& value : key.values)
        writeValue(out, value);
    out += '\n';
}

std::string writeRegFile(const RegFile& file) {
    std::string out = regFileHeader();
    for (const RegFileKey& key : file.keys)
        writeRegFileSection(out, key);
    return out;
}

bool isWritableName(std::string_view name) {
    return name.find('\n') == std::string_view::npos;
}

bool isWritableKeyPath(std::string_view path) {
    if (path.empty())
        return true;
    if (!isWritableName(path) || path.front() == '\\' || path.back() == '\\')
        return false;
    return path.find("\\\\") == std::string_view::npos;
}

std::string_view rootLongName(RootKey root) {
    for (const auto& [key, name] : rootNames)
        if (key == root)
            return name;
    return {};
}

RootKey rootFromLongName(std::string_view name) {
    for (const auto& [key, longName] : rootNames)
        if (text::iequals(name, longName))
            return key;
    return 0;
}

} // namespace pl::platform::posix
