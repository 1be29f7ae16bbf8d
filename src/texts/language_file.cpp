#include "texts/language_file.h"

#include "base/errors.h"
#include "base/text.h"

namespace pl::texts {

namespace {

constexpr std::string_view LineEnd = "\r\n";

char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Case-blind search for an ASCII key (given in lower case). No other letter folds to an ASCII one,
// so this finds what a search in the lower-cased text finds, without lower-casing the whole text
// for every key.
std::size_t findAsciiKey(std::string_view text, std::string_view lowerKey) {
    for (std::size_t at = 0; at + lowerKey.size() <= text.size(); ++at) {
        std::size_t k = 0;
        while (k < lowerKey.size() && asciiLower(text[at + k]) == lowerKey[k])
            ++k;
        if (k == lowerKey.size())
            return at;
    }
    return std::string_view::npos;
}

std::string_view trimBlanksAndTabs(std::string_view s) {
    const auto first = s.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

bool endsSection(std::string_view line) {
    const std::string_view bare = trimBlanksAndTabs(line);
    if (text::iequals(bare, "EOF"))
        return true;
    return bare.size() >= 2 && bare.front() == '[' && bare.back() == ']';
}

// Skips the one character that follows "BOT". The usual file puts the text on the next line; the
// line end is then what is skipped, also when blanks were left behind "BOT".
std::string_view skipAfterBot(std::string_view body) {
    const std::string_view afterBlanks = body.substr(std::min(body.find_first_not_of(' '), body.size()));
    if (afterBlanks.starts_with(LineEnd))
        return afterBlanks.substr(LineEnd.size());
    if (body.empty())
        return body;
    // One character, not one byte, so that a multi-byte letter is never split.
    std::size_t len = 1;
    while (len < body.size() && (static_cast<unsigned char>(body[len]) & 0xC0) == 0x80)
        ++len;
    return body.substr(len);
}

} // namespace

std::string decodeLanguageFile(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return text::crlfLines(text::fromFileBytes(bytes));
}

std::optional<std::string> assistantSection(std::string_view text) {
    const std::size_t start = findAsciiKey(text, "[plassist.exe]");
    if (start == std::string_view::npos)
        return std::nullopt;

    // Lines after the header's own line are tested for the end of the section.
    std::size_t lineStart = text.find(LineEnd, start);
    while (lineStart != std::string_view::npos) {
        lineStart += LineEnd.size();
        const std::size_t lineEnd = text.find(LineEnd, lineStart);
        const std::string_view line =
            text.substr(lineStart, lineEnd == std::string_view::npos ? std::string_view::npos : lineEnd - lineStart);
        if (endsSection(line))
            return std::string(text.substr(start, lineStart - start));
        lineStart = lineEnd;
    }
    return std::string(text.substr(start));
}

std::optional<std::string> findText(std::string_view section, int number) {
    const std::string key = "text_" + text::number(number) + ":";
    const std::size_t at = findAsciiKey(section, key);
    if (at == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = section.substr(at + key.size());

    // Only a "BOT" right behind the colon opens a text of several lines; "text_3: BOTH ways" is an
    // ordinary text that happens to begin with those letters.
    if (rest.starts_with("BOT")) {
        std::string_view body = skipAfterBot(rest.substr(3));
        const std::size_t end = body.find("EOT");
        if (end == std::string_view::npos) // a text without its end: the file is defect, not the rest of it a text
            raise(err::InvalidProcedureCall, "Language file: text_" + text::number(number) + " has BOT but no EOT");
        body = body.substr(0, end);
        // The "EOT" stands on a line of its own: the line end before it belongs to no text line.
        body = text::trimBlanks(body);
        if (body.ends_with(LineEnd))
            body.remove_suffix(LineEnd.size());
        return std::string(text::trimBlanks(body));
    }
    return std::string(text::trimBlanks(rest.substr(0, rest.find(LineEnd))));
}

} // namespace pl::texts
