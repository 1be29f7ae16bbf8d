// Private memory of an idle plAssist.exe against the minimal tray program, both started by this
// benchmark and left alone for a while: footprint_win32 PLASSIST REFERENCE [seconds]. Prints
// figures; never fails on one. (bench/win32-footprint.sh runs it under Wine with the file size and
// the imported DLLs beside it.)

#include <windows.h>
#include <psapi.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

struct Started {
    PROCESS_INFORMATION info{};
    bool ok = false;
};

Started start(const char* program) {
    Started s;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    std::string command = std::string("\"") + program + "\"";
    s.ok = CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &s.info);
    return s;
}

// The committed private memory of a process, summed over its address space (Wine leaves the
// counter of GetProcessMemoryInfo at 0).
double committedPrivateKiB(HANDLE process) {
    double bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (auto* at = static_cast<char*>(nullptr);
         VirtualQueryEx(process, at, &region, sizeof region) == sizeof region;
         at = static_cast<char*>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE)
            bytes += static_cast<double>(region.RegionSize);
        if (region.RegionSize == 0)
            break;
    }
    return bytes / 1024.0;
}

// Private memory (what the process alone costs) and the working set, in KiB.
void report(const char* name, const Started& s, double* privateKiB) {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof counters;
    if (!s.ok || WaitForSingleObject(s.info.hProcess, 0) != WAIT_TIMEOUT ||
        !GetProcessMemoryInfo(s.info.hProcess, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                              sizeof counters)) {
        std::printf("%-16s not measured (it did not start or has ended)\n", name);
        return;
    }
    *privateKiB = counters.PrivateUsage > 0 ? static_cast<double>(counters.PrivateUsage) / 1024.0
                                            : committedPrivateKiB(s.info.hProcess);
    std::printf("%-16s private %8.0f KiB   working set %8.0f KiB\n", name, *privateKiB,
                static_cast<double>(counters.WorkingSetSize) / 1024.0);
}

void end(Started& s) {
    if (!s.ok)
        return;
    TerminateProcess(s.info.hProcess, 0);
    WaitForSingleObject(s.info.hProcess, 5000);
    CloseHandle(s.info.hProcess);
    CloseHandle(s.info.hThread);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: footprint_win32 PLASSIST REFERENCE [seconds]\n");
        return 2;
    }
    const int seconds = argc > 3 ? std::atoi(argv[3]) : 5;
    Started assistant = start(argv[1]);
    Started reference = start(argv[2]);
    Sleep(static_cast<DWORD>(seconds) * 1000); // a few watcher ticks: the state it lives in all day
    double mine = 0, minimal = 0;
    report("plAssist.exe", assistant, &mine);
    report("tray reference", reference, &minimal);
    if (mine > 0 && minimal > 0)
        std::printf("ratio            %.2f (aim: at most 1.50)\n", mine / minimal);
    end(assistant);
    end(reference);
    return 0;
}
