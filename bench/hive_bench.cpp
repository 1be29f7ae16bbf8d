// What a large registry hive costs: a hive file of about 50 MB (keys of a hundred text values each,
// or one key holding all of them) is read once, one value is written three times, and values are
// read from the unchanged file. Prints the time of each step and the process's peak memory beyond
// what it held before, against the file's size. hive_bench [megabytes [one-key]]

#include "platform/posix/registry/posix_registry.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <time.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace pl::platform;
using pl::platform::posix::PosixRegistry;
using Clock = std::chrono::steady_clock;

// Resident and peak resident memory of this process in KiB, from /proc.
long statusKiB(const char* field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(field, 0) == 0)
            return std::atol(line.c_str() + std::string(field).size());
    return -1;
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// CPU time of this process: on a busy machine the clock on the wall says more about the others.
double cpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

// A hive of about `bytes` bytes: `valuesPerKey` values a key, as many keys as it takes.
std::uintmax_t writeHive(const fs::path& file, std::uintmax_t bytes, int valuesPerKey) {
    std::ofstream out(file, std::ios::binary);
    out << "Windows Registry Editor Version 5.00\n\n";
    const std::string data(72, 'x');
    std::uintmax_t written = 0;
    for (int key = 0; written < bytes; ++key) {
        out << "[HKEY_CURRENT_USER\\Software\\Bench\\Key" << key << "]\n";
        for (int v = 0; v < valuesPerKey && written < bytes; ++v) {
            out << "\"Value" << v << "\"=\"" << data << key << "\"\n";
            written += 90;
        }
        out << "\n";
    }
    out.close();
    return fs::file_size(file);
}

void run(const char* shape, std::uintmax_t bytes, int valuesPerKey) {
    const fs::path folder = fs::temp_directory_path() / ("hive_bench_" + std::to_string(::getpid()));
    fs::create_directories(folder);
    const std::uintmax_t size = writeHive(folder / "HKEY_CURRENT_USER.reg", bytes, valuesPerKey);
    const double megabytes = static_cast<double>(size) / (1024.0 * 1024.0);
    {
        const long before = statusKiB("VmRSS:");
        PosixRegistry registry(folder);
        RegValue value;
        auto start = Clock::now();
        double cpu = cpuSeconds();
        const long found = registry.queryValue(HKEY_CURRENT_USER, "Software\\Bench\\Key0", "Value0", 0, value);
        const double readSeconds = secondsSince(start), readCpu = cpuSeconds() - cpu;
        double writeSeconds = 0, writeCpu = 0;
        long failed = 0;
        for (int i = 0; i < 3; ++i) {
            RegValue changed{"Value0", 1, {static_cast<std::uint8_t>('0' + i), 0}};
            start = Clock::now();
            cpu = cpuSeconds();
            failed += registry.setValue(HKEY_CURRENT_USER, "Software\\Bench\\Key0", changed, 0) != 0;
            writeSeconds = std::max(writeSeconds, secondsSince(start));
            writeCpu = std::max(writeCpu, cpuSeconds() - cpu);
        }
        // A value read while nothing changes: once the file has been read well after its last change,
        // it is not read again.
        std::this_thread::sleep_for(std::chrono::milliseconds(2500));
        registry.queryValue(HKEY_CURRENT_USER, "Software\\Bench\\Key0", "Value0", 0, value);
        start = Clock::now();
        cpu = cpuSeconds();
        for (int i = 0; i < 100; ++i)
            registry.queryValue(HKEY_CURRENT_USER, "Software\\Bench\\Key1", "Value1", 0, value);
        const double settledCpu = (cpuSeconds() - cpu) / 100;
        const long held = statusKiB("VmRSS:") - before;
        const long peak = statusKiB("VmHWM:") - before;
        std::printf("%s, %.1f MB hive\n"
                    "  first read:         %6.3f s (%.3f s CPU)\n"
                    "  slowest of 3 writes: %6.3f s (%.3f s CPU; each re-reads the file, then writes it whole)\n"
                    "  read, unchanged:    %9.6f s CPU\n"
                    "  peak memory:        %7.1f MB (%.2fx the file)\n"
                    "  memory held:        %7.1f MB (%.2fx the file)%s\n",
                    shape, megabytes, readSeconds, readCpu, writeSeconds, writeCpu, settledCpu, peak / 1024.0,
                    peak / 1024.0 / megabytes, held / 1024.0, held / 1024.0 / megabytes,
                    found == 0 && failed == 0 ? "" : "\n  FAILED");
    }
    fs::remove_all(folder);
}

} // namespace

int main(int argc, char** argv) {
    const std::uintmax_t megabytes = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 50;
    // Peak memory only grows: the first shape run is the one its figure is true for.
    run(argc > 2 && std::string(argv[2]) == "one-key" ? "one key" : "keys of 100 values", megabytes << 20,
        argc > 2 && std::string(argv[2]) == "one-key" ? 1 << 30 : 100);
    return 0;
}
