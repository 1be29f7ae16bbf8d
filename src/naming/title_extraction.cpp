#include "naming/title_extraction.h"
#include "platform/paths.h"

#include "naming/title_cleanup.h"
#include "naming/title_line_scanner.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

namespace pl::naming {

namespace {

constexpr std::string_view fallbackName = "Paperlark File";

// The raw title of the job (empty when it has none), or nothing when the file cannot be read.
std::optional<std::string> readRawTitle(std::string_view path) {
    const auto file = platform::fsPath(path);
    std::error_code ec;
    if (std::filesystem::is_directory(file, ec))
        return std::nullopt;
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return std::nullopt;
    // Reads this large go straight from the file into the block, past the stream's own buffer.
    const auto block = std::make_unique_for_overwrite<char[]>(TitleReadBlockSize);
    TitleLineScanner scanner;
    for (;;) {
        in.read(block.get(), static_cast<std::streamsize>(TitleReadBlockSize));
        if (in.bad())
            return std::nullopt;
        const auto got = static_cast<std::size_t>(in.gcount());
        if (got > 0 && scanner.feed(std::string_view(block.get(), got)))
            break;
        if (!in)
            break; // end of file
    }
    scanner.finish();
    return scanner.rawTitle();
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
