#include "naming/title_extraction.h"
#include "platform/plain_file.h"

#include "naming/title_cleanup.h"
#include "naming/title_line_scanner.h"

#include <memory>
#include <optional>

namespace pl::naming {

namespace {

constexpr std::string_view fallbackName = "Paperlark File";

// The raw title of the job (empty when it has none), or nothing when the file cannot be read. The
// job may lie in a folder others write to: only a plain file is read, and opening never waits.
std::optional<std::string> readRawTitle(std::string_view path) {
    platform::PlainFileReader in(path);
    if (!in.isOpen())
        return std::nullopt;
    const auto block = std::make_unique_for_overwrite<char[]>(TitleReadBlockSize);
    TitleLineScanner scanner;
    for (;;) {
        const auto got = in.read(block.get(), TitleReadBlockSize);
        if (!got)
            return std::nullopt;
        if (*got == 0 || scanner.feed(std::string_view(block.get(), *got)))
            break;
    }
    scanner.finish();
    std::string title = scanner.rawTitle();
    CutAtNul(title);
    return title;
}

// Only what follows the last `separator` (an application may have put a path in the title).
void keepAfterLast(std::string& title, char separator) {
    const std::size_t last = title.rfind(separator);
    if (last != std::string::npos)
        title.erase(0, last + 1);
}

} // namespace

std::string GetPsFileTitle(std::string_view path, NamingState& state, ErrorSink& errors) {
    state.title.clear();
    const std::optional<std::string> raw = readRawTitle(path);
    if (!raw)
        return std::string(fallbackName);
    std::string title = *raw;
    if (title.empty())
        title = fallbackName;
    else
        ParsePdfFileName(title, errors);
    keepAfterLast(title, '\\');
    keepAfterLast(title, '/');
    state.title = title;
    return title;
}

} // namespace pl::naming
