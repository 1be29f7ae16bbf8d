#include "dialog/actions/dir_lookup.h"

#include "base/errors.h"
#include "platform/paths.h"

namespace pl::dialog {

std::size_t nameStart(std::string_view path) {
    std::size_t cut = path.size();
    while (cut > 0 && path[cut - 1] != platform::PathSep && path[cut - 1] != '/')
        --cut;
    return cut;
}

bool fileFound(const platform::FileSystem& files, std::string_view path) {
    if (path.empty() || path.find('\0') != std::string_view::npos)
        raise(err::BadFileNameOrNumber, "no file can be looked up under this path");
    const std::size_t cut = nameStart(path);
    const std::string_view name = path.substr(cut);
    if (name.empty())
        return false;
    // A bare name is looked for in the working folder.
    const std::string folder = cut == 0 ? std::string(".") + platform::PathSep : std::string(path.substr(0, cut));
    return files.findFirst(folder, name).has_value();
}

} // namespace pl::dialog
