#pragma once
// The few file operations the converter does itself, on UTF-8 paths, with the standard library's
// file system (which also replaces an existing file when renaming, on every platform).

#include "platform/paths.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace pl::converter {

using platform::fsPath;
using platform::utf8Path;

// `path` made absolute against the current folder, so that Ghostscript can never take a file name
// for a switch ("-..."), an argument file ("@...") or a device ("%...").
std::string absolutePath(std::string_view path);
// The folder part of an absolute path (without a trailing separator) and the file name part.
std::string folderOf(std::string_view path);
std::string fileNameOf(std::string_view path);

bool isFile(std::string_view path);
bool isFolder(std::string_view path);
bool removeFile(std::string_view path);
// Renames `from` to `to`, replacing `to` when it exists.
bool replaceFile(std::string_view from, std::string_view to);
// Creates an empty file that must not exist yet; false when it exists or cannot be created.
bool createEmptyFile(std::string_view path);
std::optional<std::string> readWholeFile(std::string_view path);

} // namespace pl::converter
