#include "converter/file_ops.h"

#include <fstream>
#include <sstream>

namespace pl::converter {

namespace fs = std::filesystem;

std::string absolutePath(std::string_view path) {
    std::error_code ec;
    fs::path full = fs::absolute(fsPath(path), ec);
    if (ec)
        return std::string(path);
    return utf8Path(full.lexically_normal());
}

std::string folderOf(std::string_view path) {
    return utf8Path(fsPath(path).parent_path());
}

std::string fileNameOf(std::string_view path) {
    return utf8Path(fsPath(path).filename());
}

bool isFile(std::string_view path) {
    std::error_code ec;
    return fs::is_regular_file(fsPath(path), ec);
}

bool isFolder(std::string_view path) {
    std::error_code ec;
    return fs::is_directory(fsPath(path), ec);
}

bool removeFile(std::string_view path) {
    std::error_code ec;
    return fs::remove(fsPath(path), ec);
}

bool replaceFile(std::string_view from, std::string_view to) {
    std::error_code ec;
    fs::rename(fsPath(from), fsPath(to), ec);
    return !ec;
}

bool createEmptyFile(std::string_view path) {
    // Callers pick names with a random part, so checking first is enough to keep two converters
    // from sharing a file.
    const fs::path target = fsPath(path);
    std::error_code ec;
    if (fs::exists(target, ec) || ec)
        return false;
    std::ofstream out(target, std::ios::binary);
    return static_cast<bool>(out);
}

std::optional<std::string> readWholeFile(std::string_view path) {
    std::ifstream in(fsPath(path), std::ios::binary);
    if (!in)
        return std::nullopt;
    std::ostringstream content;
    content << in.rdbuf();
    if (in.bad())
        return std::nullopt;
    return content.str();
}

} // namespace pl::converter
