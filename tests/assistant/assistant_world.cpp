#include "assistant_world.h"

#include "platform/paths.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>

namespace pl::test {
namespace fs = std::filesystem;

forms::Form& TakingDialogHost::loadJobDialog() {
    state_.DialogActive = true;
    const std::string job = state_.PsFolder + state_.PsFile;
    taken.push_back(job);
    if (files_.rename(job, takenFolder_ + state_.PsFile) && takenCount_)
        ++*takenCount_;
    dialog.loaded = stayOpen;
    if (!stayOpen)
        state_.DialogActive = false;
    return dialog;
}

Session::Session(platform::Registry* shared)
    : os(platform::makeNativePlatform()), ownRegistry(os->registry()), registry(shared ? *shared : ownRegistry),
      report(*os, registry, view, state, [this](int exitCode) { endedWith = exitCode; }),
      services{*os, registry, report, view}, context{services, state, texts, naming, view} {}

WorldFolders::WorldFolders(const std::string& userName) {
    const std::string base = root.folder();
    for (const char* folder : {"profile", "runtime", "config"})
        fs::create_directories(root.path() / folder);
    fs::permissions(root.path() / "runtime", fs::perms::owner_all, fs::perm_options::replace);
    root.write("profile/ntuser.dat", "");
    env.set("username", userName);
    env.set("temp", base + "temp");
    env.set("LOCALAPPDATA", base + "local");
    env.set("XDG_DATA_HOME", base + "local");
    env.set("XDG_CONFIG_HOME", base + "config");
    env.set("userprofile", base + "profile");
    env.set("XDG_RUNTIME_DIR", base + "runtime");
    env.set("XDG_SESSION_ID", "test" + std::to_string(std::random_device{}()));
}

std::string WorldFolders::folder(const char* name) const {
    fs::create_directories(root.path() / name);
    return root.folder() + name + platform::PathSep;
}

AssistantWorld::AssistantWorld(const std::string& userName)
    : WorldFolders(userName), Session(&testRegistry.registry()) {
    const char* shellFolders = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
    registry.SetRegValue(shellFolders, "Desktop", root.folder() + "desktop");
    registry.SetRegValue(shellFolders, "Local AppData", root.folder() + "local");
    setMachine("psdir", machineFolder);
    setUser("psdir", userFolder);
    setMachine("language", "2");
}

std::string AssistantWorld::fileAt(const std::string& path, std::chrono::system_clock::time_point when) const {
    writeJob(path);
    fs::last_write_time(path, std::chrono::file_clock::from_sys(when));
    return path;
}

std::vector<std::string> AssistantWorld::logLines() const {
    std::ifstream in(logFile(), std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

std::chrono::system_clock::time_point startOfDayDaysAgo(int daysBack) {
    const std::time_t now = std::time(nullptr);
    std::tm local = *std::localtime(&now);
    local.tm_mday -= daysBack;
    local.tm_hour = local.tm_min = local.tm_sec = 0;
    local.tm_isdst = -1;
    return std::chrono::system_clock::from_time_t(std::mktime(&local));
}

void writeJob(const std::string& path) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << "%!PS-Adobe-3.0\n%%Title: test\n";
}

} // namespace pl::test
