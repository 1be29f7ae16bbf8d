#include "converter/output_files.h"

#include "converter/file_ops.h"

#include <cctype>

namespace pl::converter {

namespace fs = std::filesystem;

namespace {

struct Spec {
    std::size_t position;
    std::size_t length;
    int width;
};

// A page-number format at `at` in `name`: "%", optional digits (a leading zero pads), "d".
std::optional<Spec> specAt(std::string_view name, std::size_t at) {
    if (name[at] != '%')
        return std::nullopt;
    std::size_t i = at + 1;
    int width = 0;
    while (i < name.size() && std::isdigit(static_cast<unsigned char>(name[i])) && i - at <= 3) {
        width = width * 10 + (name[i] - '0');
        ++i;
    }
    if (i < name.size() && name[i] == 'd')
        return Spec{at, i + 1 - at, width};
    return std::nullopt;
}

std::optional<Spec> firstSpec(std::string_view name) {
    for (std::size_t at = 0; at < name.size(); ++at) {
        if (auto spec = specAt(name, at))
            return spec;
    }
    return std::nullopt;
}

bool allDigits(std::string_view s) {
    if (s.empty())
        return false;
    for (char c : s) {
        if (!std::isdigit(static_cast<unsigned char>(c)))
            return false;
    }
    return true;
}

} // namespace

std::optional<PagePattern> findPagePattern(std::string_view path) {
    const std::string name = fileNameOf(path);
    const auto spec = firstSpec(name);
    if (!spec)
        return std::nullopt;
    return PagePattern{folderOf(path), name.substr(0, spec->position), spec->width,
                       name.substr(spec->position + spec->length)};
}

std::string pageFile(const PagePattern& pattern, int page) {
    std::string number = std::to_string(page);
    if (static_cast<int>(number.size()) < pattern.width)
        number.insert(0, static_cast<std::size_t>(pattern.width) - number.size(), '0');
    return utf8Path(fsPath(pattern.folder) / fsPath(pattern.prefix + number + pattern.suffix));
}

std::map<std::string, fs::file_time_type> existingPageFiles(const PagePattern& pattern) {
    std::map<std::string, fs::file_time_type> found;
    std::error_code ec;
    for (fs::directory_iterator it(fsPath(pattern.folder), ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = utf8Path(it->path().filename());
        if (name.size() <= pattern.prefix.size() + pattern.suffix.size() || !name.starts_with(pattern.prefix) ||
            !name.ends_with(pattern.suffix))
            continue;
        const std::string_view number = std::string_view(name).substr(
            pattern.prefix.size(), name.size() - pattern.prefix.size() - pattern.suffix.size());
        if (!allDigits(number) || static_cast<int>(number.size()) < pattern.width)
            continue;
        std::error_code timeError;
        found.emplace(utf8Path(it->path()), fs::last_write_time(it->path(), timeError));
    }
    return found;
}

std::string ghostscriptOutputFile(std::string_view path, bool keepPagePattern) {
    std::optional<std::size_t> keepAt, keepLength;
    if (keepPagePattern) {
        // Only the file name may carry the page number: a "%d" in a folder name is a folder name.
        const std::string name = fileNameOf(path);
        if (const auto spec = firstSpec(name)) {
            const std::size_t nameStart = path.size() - name.size();
            keepAt = nameStart + spec->position;
            keepLength = spec->length;
        }
    }
    std::string out;
    out.reserve(path.size() + 8);
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (keepAt && i == *keepAt) {
            out.append(path.substr(i, *keepLength));
            i += *keepLength - 1;
            continue;
        }
        out += path[i];
        if (path[i] == '%')
            out += '%';
    }
    return out;
}

} // namespace pl::converter
