// The private memory of an idle plassist against a minimal Qt tray program, both started in the
// same run on the offscreen platform, each in a sandbox of its own (registry store, spool folders,
// home, runtime folder). Private memory is what the process costs beyond what it shares with
// others: Private_Clean + Private_Dirty of /proc/PID/smaps_rollup. Prints both and the ratio; the
// aim is at most 1.5. An idle assistant shows no tray icon; a third run, with a MultiDoc document
// queued, shows what the icon adds.
//
//     footprint_bench [SECONDS]     how long each program idles before it is measured (default 5)

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;

struct Memory {
    long privateKb = 0;
    long rssKb = 0;
    long pssKb = 0;
};

// A folder below the temporary folder with everything a program of the suite looks at.
class Sandbox {
public:
    explicit Sandbox(const std::string& name) {
        root_ = fs::temp_directory_path() / ("footprint_" + name + "_" + std::to_string(getpid()));
        fs::remove_all(root_);
        for (const char* folder : {"reg", "home", "machine", "user", "config", "data", "desktop"})
            fs::create_directories(root_ / folder);
        fs::create_directories(root_ / "run");
        fs::permissions(root_ / "run", fs::perms::owner_all);
        std::ofstream(root_ / "reg" / "HKEY_LOCAL_MACHINE.reg")
            << "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\Software\\tobrin\\PaperlarkXP]\n"
            << "\"psdir\"=\"" << path("machine") << "/\"\n";
        std::ofstream(root_ / "reg" / "HKEY_CURRENT_USER.reg")
            << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\n"
            << "\"psdir\"=\"" << path("user") << "/\"\n\n"
            << "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders]\n"
            << "\"Desktop\"=\"" << path("desktop") << "\"\n";
    }
    ~Sandbox() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    std::string path(const std::string& folder) const { return (root_ / folder).string(); }

    // The environment of a program started in the sandbox.
    std::vector<std::string> environment() const {
        return {"PATH=/usr/bin:/bin",
                "HOME=" + path("home"),
                "USER=benchmark",
                "XDG_RUNTIME_DIR=" + path("run"),
                "XDG_CONFIG_HOME=" + path("config"),
                "XDG_DATA_HOME=" + path("data"),
                "PAPERLARK_REGISTRY_DIR=" + path("reg"),
                "QT_QPA_PLATFORM=offscreen"};
    }

private:
    fs::path root_;
};

pid_t start(const std::string& program, const Sandbox& sandbox) {
    std::vector<std::string> env = sandbox.environment();
    std::vector<char*> envp;
    for (auto& e : env)
        envp.push_back(e.data());
    envp.push_back(nullptr);
    std::string name = program;
    char* argv[] = {name.data(), nullptr};
    pid_t pid = 0;
    if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, envp.data()) != 0)
        return 0;
    return pid;
}

bool running(pid_t pid) {
    return waitpid(pid, nullptr, WNOHANG) == 0;
}

Memory measure(pid_t pid) {
    Memory m;
    std::ifstream in("/proc/" + std::to_string(pid) + "/smaps_rollup");
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string key;
        long kb = 0;
        fields >> key >> kb;
        if (key == "Private_Clean:" || key == "Private_Dirty:")
            m.privateKb += kb;
        else if (key == "Rss:")
            m.rssKb = kb;
        else if (key == "Pss:")
            m.pssKb = kb;
    }
    return m;
}

// Ends plassist the way an administrator does, with the end marker; anything else with SIGTERM.
void stop(pid_t pid, const std::string& endMarker) {
    if (!endMarker.empty())
        std::ofstream(endMarker) << "\n";
    for (int i = 0; i < 50 && running(pid); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    if (running(pid)) {
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }
}

} // namespace

int main(int argc, char** argv) {
    const int idleSeconds = argc > 1 ? std::atoi(argv[1]) : 5;
    Sandbox referenceBox("reference"), assistantBox("plassist"), trayBox("plassist_tray");
    std::ofstream(trayBox.path("user") + "/MultiDocbenchmark1.ps") << "%!PS-Adobe-3.0\n";

    const pid_t reference = start(FOOTPRINT_REFERENCE, referenceBox);
    const pid_t assistant = start(FOOTPRINT_PLASSIST, assistantBox);
    const pid_t withTray = start(FOOTPRINT_PLASSIST, trayBox);
    if (reference == 0 || assistant == 0 || withTray == 0) {
        std::fprintf(stderr, "could not start the programs\n");
        return 1;
    }
    std::this_thread::sleep_for(std::chrono::seconds(idleSeconds));
    if (!running(reference) || !running(assistant) || !running(withTray)) {
        std::fprintf(stderr, "a program ended before it was measured\n");
        return 1;
    }
    const Memory ref = measure(reference);
    const Memory own = measure(assistant);
    const Memory tray = measure(withTray);
    stop(assistant, assistantBox.path("machine") + "/plassistende.cmd");
    stop(withTray, trayBox.path("machine") + "/plassistende.cmd");
    stop(reference, "");

    std::printf("idle for %d s, offscreen, private = Private_Clean + Private_Dirty\n", idleSeconds);
    std::printf("%-22s %10s %10s %10s\n", "program", "private kB", "Pss kB", "Rss kB");
    std::printf("%-22s %10ld %10ld %10ld\n", "Qt tray reference", ref.privateKb, ref.pssKb, ref.rssKb);
    std::printf("%-22s %10ld %10ld %10ld\n", "plassist", own.privateKb, own.pssKb, own.rssKb);
    std::printf("%-22s %10ld %10ld %10ld\n", "plassist, tray icon up", tray.privateKb, tray.pssKb, tray.rssKb);
    if (ref.privateKb > 0)
        std::printf("ratio plassist / reference (private): %.2f (aim: at most 1.50)\n",
                    static_cast<double>(own.privateKb) / static_cast<double>(ref.privateKb));
    if (ref.privateKb > 0)
        std::printf("ratio with the tray icon up: %.2f\n",
                    static_cast<double>(tray.privateKb) / static_cast<double>(ref.privateKb));
    return 0;
}
