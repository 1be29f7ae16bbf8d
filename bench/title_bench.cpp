// Times the title extraction on a 1 GiB job without a title line (the worst case: the whole file is
// read) against grep searching the same file in the same run, and measures the extraction's peak
// memory. Then the same for a 1 GiB job that is one single line. Prints the figures; never fails on
// them.
//
// Usage: title_bench [folder]   (default: $TMPDIR, else /tmp; the files are removed afterwards)

#include "base/errors.h"
#include "naming/title_extraction.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t fileSize = 1ull << 30;
constexpr int rounds = 3;

class IgnoreReports : public pl::ErrorSink {
public:
    void report(std::string_view, std::string_view, const pl::RuntimeError&, std::string_view) override {}
};

// A page of what printer drivers write: operators, text, a DSC comment or two and hex image data.
// `separator` ends each line ("\n" for an ordinary job, " " for a job that is one single line).
std::string pageBody(int page, char separator) {
    const std::string n = std::to_string(page);
    std::string out;
    auto line = [&](const std::string& text) {
        out += text;
        out += separator;
    };
    line("%%Page: " + n + " " + n);
    line("%%BeginPageSetup");
    line("<< /PageSize [595 842] >> setpagedevice");
    line("%%EndPageSetup");
    line("gsave 72 770 moveto /Helvetica findfont 12 scalefont setfont");
    line("(Quarterly figures, page " + n + ") show");
    for (int row = 0; row < 24; ++row)
        line("0.5 setgray " + std::to_string(72 + row * 3) + " " + std::to_string(100 + row * 20) +
             " 451 12 rectfill 0 setgray (Row " + std::to_string(row) + ": 1,234.56 EUR) show");
    line("100 100 8 [1 0 0 1 0 0] {currentfile 64 string readhexstring pop} image");
    for (int row = 0; row < 48; ++row)
        line("FFEEDDCCBBAA99887766554433221100FFEEDDCCBBAA99887766554433221100"
             "0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF");
    line("grestore showpage");
    return out;
}

// A job of exactly fileSize bytes without any "%%Title:" comment.
void writeJob(const std::string& path, char separator) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    std::string header;
    for (const char* line : {"%!PS-Adobe-3.0", "%%Creator: PScript5.dll Version 5.2.2", "%%Pages: (atend)",
                             "%%DocumentNeededResources: font Helvetica", "%%EndComments"})
        (header += line) += separator;
    out << header;
    std::uint64_t written = header.size();
    std::string chunk;
    for (int page = 1; written < fileSize; ++page) {
        chunk += pageBody(page, separator);
        if (chunk.size() >= (1u << 20) || written + chunk.size() >= fileSize) {
            const auto take = static_cast<std::size_t>(std::min<std::uint64_t>(chunk.size(), fileSize - written));
            out.write(chunk.data(), static_cast<std::streamsize>(take));
            written += take;
            chunk.clear();
        }
    }
}

// Reads the whole file once so that both contestants find it in the page cache.
void warmCache(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<char> block(1 << 20);
    while (in.read(block.data(), static_cast<std::streamsize>(block.size())) || in.gcount() > 0) {
    }
}

// Wall-clock seconds of `grep -i -m1 '%%title:' path` as a real process, output discarded.
double timeGrep(const std::string& path) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    std::string a0 = "grep", a1 = "-i", a2 = "-m1", a3 = "%%title:", a4 = path;
    char* argv[] = {a0.data(), a1.data(), a2.data(), a3.data(), a4.data(), nullptr};
    const auto start = Clock::now();
    pid_t pid = 0;
    if (posix_spawnp(&pid, "grep", &actions, nullptr, argv, environ) != 0) {
        posix_spawn_file_actions_destroy(&actions);
        return -1;
    }
    int status = 0;
    waitpid(pid, &status, 0);
    const auto stop = Clock::now();
    posix_spawn_file_actions_destroy(&actions);
    return std::chrono::duration<double>(stop - start).count();
}

long statusKiB(const char* field) {
    std::ifstream in("/proc/self/status");
    std::string line;
    const std::string key = std::string(field) + ":";
    while (std::getline(in, line))
        if (line.rfind(key, 0) == 0)
            return std::strtol(line.c_str() + key.size(), nullptr, 10);
    return -1;
}

struct Extraction {
    double seconds = -1;
    long peakAboveBaselineKiB = -1;
    std::string title;
};

// Runs the extraction in a child process, whose peak resident memory is reset just before, so that
// the peak it reports is the extraction's own on top of the process's baseline.
Extraction timeExtraction(const std::string& path) {
    int fds[2];
    if (pipe(fds) != 0)
        return {};
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        std::ofstream("/proc/self/clear_refs") << "5"; // peak RSS := current RSS
        const long baseline = statusKiB("VmRSS");
        IgnoreReports sink;
        pl::naming::NamingState state;
        const auto start = Clock::now();
        const std::string title = pl::naming::GetPsFileTitle(path, state, sink);
        const auto stop = Clock::now();
        const long peak = statusKiB("VmHWM");
        char report[512];
        const int length =
            std::snprintf(report, sizeof report, "%.6f %ld %s", std::chrono::duration<double>(stop - start).count(),
                          peak - baseline, title.c_str());
        if (write(fds[1], report, static_cast<std::size_t>(length)) < 0)
            _exit(1);
        _exit(0);
    }
    close(fds[1]);
    std::string report;
    char buffer[512];
    for (ssize_t got; (got = read(fds[0], buffer, sizeof buffer)) > 0;)
        report.append(buffer, static_cast<std::size_t>(got));
    close(fds[0]);
    waitpid(pid, nullptr, 0);
    Extraction result;
    char* rest = nullptr;
    result.seconds = std::strtod(report.c_str(), &rest);
    result.peakAboveBaselineKiB = std::strtol(rest, &rest, 10);
    if (*rest == ' ')
        result.title = rest + 1;
    return result;
}

void measure(const std::string& label, const std::string& path, char separator) {
    std::printf("%s: generating %llu MiB ...\n", label.c_str(), static_cast<unsigned long long>(fileSize >> 20));
    std::fflush(stdout);
    writeJob(path, separator);
    warmCache(path);
    timeGrep(path); // grep's own start-up files into the cache too

    double grepBest = 1e30, extractionBest = 1e30;
    long peakKiB = 0;
    std::string title;
    for (int round = 0; round < rounds; ++round) {
        grepBest = std::min(grepBest, timeGrep(path));
        const Extraction e = timeExtraction(path);
        extractionBest = std::min(extractionBest, e.seconds);
        peakKiB = std::max(peakKiB, e.peakAboveBaselineKiB);
        title = e.title;
    }
    std::remove(path.c_str());

    const double gib = static_cast<double>(fileSize) / (1 << 30);
    std::printf("  grep -i -m1 '%%%%title:'   %8.3f s  (%.2f GiB/s)\n", grepBest, gib / grepBest);
    std::printf("  GetPsFileTitle           %8.3f s  (%.2f GiB/s)  -> \"%s\"\n", extractionBest, gib / extractionBest,
                title.c_str());
    std::printf("  ratio GetPsFileTitle/grep %7.2f   (aim: at most 1.5)\n", extractionBest / grepBest);
    std::printf("  peak memory above baseline %6.2f MiB (aim: under 8 MiB)\n", static_cast<double>(peakKiB) / 1024);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    std::string folder = argc > 1 ? argv[1] : "";
    if (folder.empty()) {
        const char* tmp = std::getenv("TMPDIR");
        folder = tmp && *tmp ? tmp : "/tmp";
    }
    if (folder.back() != '/')
        folder += '/';
    const std::string path = folder + "title_bench_" + std::to_string(getpid()) + ".ps";

    std::printf("best of %d rounds each, page cache warm, grep run as its own process\n", rounds);
    measure("1 GiB job without a title line", path, '\n');
    measure("1 GiB job that is a single line", path, ' ');
    return 0;
}
