#include "platform/win32/win32_services.h"

#include <windows.h>

namespace pl::platform::win32 {

namespace {

bool isSeparator(char c) {
    return c == '\\' || c == '/';
}

std::string searchSpec(std::string_view folder, std::string_view pattern) {
    std::string spec(folder);
    if (!spec.empty() && !isSeparator(spec.back()))
        spec.push_back('\\');
    spec += pattern;
    return spec;
}

struct SearchResult {
    std::vector<DirEntry> found;
    bool complete = false;
};

// The entries as FindFirstFile lists them (NTFS: ordered by name, ignoring case). The system's own
// matching also accepts a name whose short 8.3 alias matches ("*.ps" finds "job.psx" through
// "JOB~1.PS"), so every name is checked again against the long name alone.
SearchResult search(std::string_view folder, std::string_view pattern, bool includeFolders, bool firstOnly) {
    SearchResult result;
    WIN32_FIND_DATAA data{};
    HANDLE find = FindFirstFileExA(searchSpec(folder, pattern).c_str(), FindExInfoBasic, &data, FindExSearchNameMatch,
                                   nullptr, 0);
    if (find == INVALID_HANDLE_VALUE) {
        // Nothing matched in a folder that could be read, or the folder could not be read at all.
        const DWORD error = GetLastError();
        result.complete = error == ERROR_FILE_NOT_FOUND || error == ERROR_NO_MORE_FILES;
        return result;
    }
    bool more = true;
    while (more) {
        const std::string_view name = data.cFileName;
        const bool isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (name != "." && name != ".." && (includeFolders || !isFolder) && wildcardMatch(pattern, name)) {
            result.found.push_back({std::string(name), isFolder});
            if (firstOnly)
                break;
        }
        more = FindNextFileA(find, &data) != 0;
    }
    result.complete = more || GetLastError() == ERROR_NO_MORE_FILES;
    FindClose(find);
    return result;
}

std::optional<WIN32_FILE_ATTRIBUTE_DATA> attributes(std::string_view path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (path.empty() || !GetFileAttributesExA(std::string(path).c_str(), GetFileExInfoStandard, &data))
        return std::nullopt;
    return data;
}

// FILETIME counts 100-nanosecond steps since 1601; the system clock counts from 1970.
FileTime fromFileTime(const FILETIME& time) {
    const std::uint64_t ticks = (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    constexpr std::int64_t ticksFrom1601To1970 = 116444736000000000LL;
    const auto sinceEpoch = std::chrono::duration<std::int64_t, std::ratio<1, 10000000>>(
        static_cast<std::int64_t>(ticks) - ticksFrom1601To1970);
    return FileTime(std::chrono::duration_cast<FileTime::duration>(sinceEpoch));
}

// Where the part of `path` that names a drive or a share ends: "C:\", "\\server\share\".
std::size_t rootLength(const std::string& path) {
    if (path.size() >= 2 && path[1] == ':')
        return path.size() >= 3 && isSeparator(path[2]) ? 3 : 2;
    if (path.size() >= 2 && isSeparator(path[0]) && isSeparator(path[1])) {
        std::size_t separators = 0;
        for (std::size_t i = 2; i < path.size(); ++i)
            if (isSeparator(path[i]) && ++separators == 2)
                return i + 1;
        return path.size();
    }
    return path.size() >= 1 && isSeparator(path[0]) ? 1 : 0;
}

} // namespace

std::optional<DirEntry> Win32FileSystem::findFirst(std::string_view folder, std::string_view pattern,
                                                   bool includeFolders) const {
    return searchFirst(folder, pattern, includeFolders).entry;
}

FileSystem::FirstMatch Win32FileSystem::searchFirst(std::string_view folder, std::string_view pattern,
                                                    bool includeFolders) const {
    SearchResult result = search(folder, pattern, includeFolders, true);
    FirstMatch match;
    match.complete = result.complete;
    if (!result.found.empty())
        match.entry = std::move(result.found.front());
    return match;
}

std::vector<DirEntry> Win32FileSystem::findAll(std::string_view folder, std::string_view pattern,
                                               bool includeFolders) const {
    return search(folder, pattern, includeFolders, false).found;
}

std::string Win32FileSystem::resolveCase(std::string_view path) const {
    return std::string(path); // the file system itself ignores case
}

bool Win32FileSystem::exists(std::string_view path) const {
    return attributes(path).has_value();
}

bool Win32FileSystem::isFolder(std::string_view path) const {
    const auto data = attributes(path);
    return data && (data->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::optional<std::uint64_t> Win32FileSystem::size(std::string_view path) const {
    const auto data = attributes(path);
    if (!data || (data->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return std::nullopt;
    return (static_cast<std::uint64_t>(data->nFileSizeHigh) << 32) | data->nFileSizeLow;
}

std::optional<FileTime> Win32FileSystem::modified(std::string_view path) const {
    const auto data = attributes(path);
    if (!data)
        return std::nullopt;
    return fromFileTime(data->ftLastWriteTime);
}

bool Win32FileSystem::rename(std::string_view from, std::string_view to) {
    if (from.empty() || to.empty())
        return false;
    // To another drive the system copies and then deletes; an existing target is never replaced.
    return MoveFileExA(std::string(from).c_str(), std::string(to).c_str(), MOVEFILE_COPY_ALLOWED) != 0;
}

bool Win32FileSystem::remove(std::string_view path) {
    return !path.empty() && DeleteFileA(std::string(path).c_str()) != 0;
}

bool Win32FileSystem::createFolder(std::string_view path) {
    if (path.empty())
        return false;
    const std::string full(path);
    for (std::size_t i = rootLength(full); i <= full.size(); ++i) {
        if (i < full.size() && !isSeparator(full[i]))
            continue;
        const std::string prefix = full.substr(0, i);
        if (!prefix.empty() && !isSeparator(prefix.back()) && !isFolder(prefix))
            CreateDirectoryA(prefix.c_str(), nullptr); // a failure shows in the final check
    }
    return isFolder(full);
}

bool Win32FileSystem::removeFolder(std::string_view path) {
    return !path.empty() && RemoveDirectoryA(std::string(path).c_str()) != 0;
}

} // namespace pl::platform::win32
