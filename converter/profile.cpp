#include "converter/profile.h"

#include "base/text.h"

namespace pl::converter {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The value of `key` when `line` is that key's line; keys are found in any letter case and may be
// indented, the value runs to the end of the line as written.
std::optional<std::string> keyValue(std::string_view line, std::string_view key) {
    std::size_t start = 0;
    while (start < line.size() && (line[start] == ' ' || line[start] == '\t'))
        ++start;
    if (!text::istartsWith(line.substr(start), key))
        return std::nullopt;
    return std::string(line.substr(start + key.size()));
}

} // namespace

Profile parseProfile(std::string_view text) {
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());

    Profile profile;
    bool first = true;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);

        if (first) {
            profile.switches = std::string(line);
            first = false;
        } else if (auto value = keyValue(line, "userpassword=")) {
            profile.userPassword = std::move(value);
        } else if (auto owner = keyValue(line, "ownerpassword=")) {
            profile.ownerPassword = std::move(owner);
        }
    }
    return profile;
}

std::optional<std::string> locateProfile(std::string_view name, std::string_view userFolder,
                                         std::string_view suiteFolder, const platform::FileSystem& files) {
    if (name.empty())
        return std::nullopt;
    for (std::string_view folder : {userFolder, suiteFolder}) {
        if (folder.empty())
            continue;
        const std::string candidate = files.resolveCase(std::string(folder) + std::string(name) + ".plp");
        if (files.exists(candidate) && !files.isFolder(candidate))
            return candidate;
    }
    return std::nullopt;
}

} // namespace pl::converter
