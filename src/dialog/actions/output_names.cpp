#include "dialog/actions/output_names.h"

#include "base/text.h"

namespace pl::dialog {

namespace {

// The last `count` characters of `text` (all of it when it is shorter), as Right$ gives them.
std::string lastCharacters(std::string_view text, std::size_t count) {
    const std::u32string chars = text::decode(text);
    const std::size_t from = chars.size() > count ? chars.size() - count : 0;
    return text::encode(std::u32string_view(chars).substr(from));
}

// `text` without its last `count` characters.
std::string withoutLastCharacters(std::string_view text, std::size_t count) {
    const std::u32string chars = text::decode(text);
    return text::encode(std::u32string_view(chars).substr(0, chars.size() > count ? chars.size() - count : 0));
}

} // namespace

std::size_t characters(std::string_view text) {
    return text::length(text);
}

void CheckForPdfExt(std::string& name, std::string_view outputSuffix) {
    name = std::string(text::trimBlanks(name));
    if (characters(name) > 3) {
        if (text::toLower(lastCharacters(name, 4)) != outputSuffix)
            name += outputSuffix;
    } else if (!name.empty()) {
        name += outputSuffix;
    } else {
        name = "Paperlark File" + std::string(outputSuffix);
    }
}

void CheckSuffix(std::string& name, std::string_view outputSuffix) {
    if (outputSuffix.empty())
        return;
    name = std::string(text::trimBlanks(name));
    const std::size_t suffixLength = characters(outputSuffix);
    std::string tail;
    if (characters(name) > suffixLength) {
        // From the position "length minus suffix length" on: one character more than the suffix.
        tail = lastCharacters(name, suffixLength + 1);
    } else if (name.empty()) {
        name = "Paperlark_XP Created File";
    }
    if (text::toLower(tail) != text::toLower(outputSuffix))
        name += outputSuffix;
}

std::string repairNameBoxSuffix(std::string_view name, std::string_view outputSuffix, std::string_view pagePattern) {
    const std::size_t suffixLength = characters(outputSuffix);
    const std::string stem = text::toLower(lastCharacters(name, suffixLength)) != outputSuffix
                                 ? std::string(name)
                                 : withoutLastCharacters(name, suffixLength);
    return stem + std::string(pagePattern) + std::string(outputSuffix);
}

std::string repairSavedPathSuffix(std::string_view path, std::string_view outputSuffix, std::string_view pagePattern) {
    if (characters(path) <= characters(outputSuffix))
        return std::string(path);
    return repairNameBoxSuffix(path, outputSuffix, pagePattern);
}

} // namespace pl::dialog
