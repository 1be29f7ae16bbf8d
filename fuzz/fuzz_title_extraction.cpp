// Arbitrary bytes as a job file. The streaming scanner must find exactly the title that reading the
// file line by line finds, however the bytes are split into blocks, and the extraction must return
// a bare name.

#include "base/text.h"
#include "naming/title_extraction.h"
#include "naming/title_line_scanner.h"

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace {

class IgnoreReports : public pl::ErrorSink {
public:
    void report(std::string_view, std::string_view, const pl::RuntimeError&, std::string_view) override {}
};

// The title as the line-by-line reading defines it, in characters: the first line (ended by CR or
// LF) containing "%%title:" in any case, from the ninth character after the marker, leading blanks
// removed.
std::optional<std::u32string> titleByLines(std::string_view file) {
    std::size_t start = 0;
    while (start <= file.size()) {
        std::size_t end = file.find_first_of("\r\n", start);
        if (end == std::string_view::npos)
            end = file.size();
        const std::u32string line = pl::text::decode(file.substr(start, end - start));
        const std::size_t at = pl::text::toLower(line).find(U"%%title:");
        if (at != std::u32string::npos) {
            std::u32string title = at + 9 <= line.size() ? line.substr(at + 9) : std::u32string();
            const std::size_t firstNonBlank = title.find_first_not_of(U' ');
            title.erase(0, firstNonBlank == std::u32string::npos ? title.size() : firstNonBlank);
            return title;
        }
        start = end + 1;
    }
    return std::nullopt;
}

std::optional<std::u32string> titleByScanner(std::string_view file, std::size_t piece) {
    pl::naming::TitleLineScanner scanner;
    for (std::size_t at = 0; at < file.size(); at += piece)
        if (scanner.feed(file.substr(at, piece)))
            break;
    scanner.finish();
    if (!scanner.found())
        return std::nullopt;
    return pl::text::decode(scanner.rawTitle());
}

// One job file per fuzzer process, written afresh for every input and removed when the process
// ends. It lives in memory (/dev/shm) where there is one: rewriting a file on disk thousands of times
// a second makes the file system flush it every time.
std::filesystem::path scratchFolder() {
    std::error_code ec;
    if (std::filesystem::is_directory("/dev/shm", ec))
        return "/dev/shm";
    return std::filesystem::temp_directory_path();
}

struct JobFile {
    std::string path = (scratchFolder() / ("fuzz_title_extraction_" + std::to_string(getpid()) + ".ps")).string();
    ~JobFile() {
        std::error_code ec;
        std::filesystem::remove(path, ec);
    }
};

const std::string& jobPath() {
    static const JobFile file;
    return file.path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    if (size > pl::naming::TitleLineScanner::MaxTitleBytes)
        return 0; // beyond this the scanner keeps only the title's end, by design

    const auto expected = titleByLines(file);
    const std::size_t piece = size == 0 ? 1 : 1 + data[0] % 13;
    if (titleByScanner(file, piece) != expected || titleByScanner(file, size + 1) != expected)
        __builtin_trap();

    std::error_code ec;
    std::filesystem::remove(jobPath(), ec);
    std::ofstream(jobPath(), std::ios::binary).write(file.data(), static_cast<std::streamsize>(size));
    IgnoreReports sink;
    pl::naming::NamingState state;
    const std::string title = pl::naming::GetPsFileTitle(jobPath(), state, sink);
    if (title != state.title || title.find_first_of("\\/") != std::string::npos)
        __builtin_trap();
    if (!expected && title != "Paperlark File")
        __builtin_trap();
    return 0;
}
