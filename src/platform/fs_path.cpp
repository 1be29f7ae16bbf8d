#include "platform/paths.h"

// Kept apart from the separator-aware helpers, which need the operating system's separator: these
// conversions are the same everywhere and link without it.

namespace pl::platform {

std::filesystem::path fsPath(std::string_view utf8) {
    return std::filesystem::path(std::u8string(reinterpret_cast<const char8_t*>(utf8.data()), utf8.size()));
}

std::string utf8Path(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(reinterpret_cast<const char*>(text.data()), text.size());
}

} // namespace pl::platform
