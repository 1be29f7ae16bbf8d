#include "converter/output_files.h"

#include "converter/file_ops.h"
#include "platform/run_marks.h"

#include <cctype>

namespace pl::converter {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kTemporaryStart = ".paperlark-";
constexpr std::string_view kTemporaryEnd = ".tmp";
constexpr std::size_t kRandomLength = 16;

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

std::string numberedPath(std::string_view path, int n) {
    const std::string name = fileNameOf(path);
    const std::size_t dot = name.rfind('.');
    const std::size_t stemEnd = dot == std::string::npos || dot == 0 ? name.size() : dot;
    const std::string numbered = name.substr(0, stemEnd) + " (" + std::to_string(n) + ")" + name.substr(stemEnd);
    return utf8Path(fsPath(folderOf(path)) / fsPath(numbered));
}

std::string temporaryPath(std::string_view folder, std::string_view runTag, std::string_view random) {
    const std::string name = std::string(kTemporaryStart) + std::string(runTag) + "-" + std::string(random) +
                             std::string(kTemporaryEnd);
    return utf8Path(fsPath(folder) / fsPath(name));
}

void removeStaleTemporaries(std::string_view folder) {
    std::vector<std::string> stale;
    std::error_code ec;
    for (fs::directory_iterator it(fsPath(folder), ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = utf8Path(it->path().filename());
        const std::size_t fixed = kTemporaryStart.size() + 1 + kRandomLength + kTemporaryEnd.size();
        if (name.size() <= fixed || !name.starts_with(kTemporaryStart) || !name.ends_with(kTemporaryEnd))
            continue;
        const std::string tag = name.substr(kTemporaryStart.size(), name.size() - fixed);
        if (platform::leftByEndedRun(utf8Path(it->path()), tag))
            stale.push_back(utf8Path(it->path()));
    }
    for (const auto& path : stale)
        removeFile(path);
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
