#include "platform/paths.h"

namespace pl::platform {

namespace {

// '/' separates folders on every system the program runs on, Windows included, so a folder value
// written either way is recognised.
bool isSeparator(char c) {
    return c == PathSep || c == '/';
}

} // namespace

std::string withTrailingSep(std::string_view folder) {
    if (folder.empty())
        return {};
    std::size_t end = folder.size();
    while (end > 0 && isSeparator(folder[end - 1]))
        --end;
    std::string result(folder.substr(0, end));
    result.push_back(PathSep);
    return result;
}

} // namespace pl::platform
