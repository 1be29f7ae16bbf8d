#include "assistant_world.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>

namespace pl::test {
namespace fs = std::filesystem;

TakingDialogHost::TakingDialogHost(forms::AppState& state, platform::FileSystem& files, std::string takenFolder,
                                   std::atomic<int>* takenCount)
    : state_(state), files_(files), takenFolder_(std::move(takenFolder)), takenCount_(takenCount) {}

forms::Form& TakingDialogHost::loadJobDialog() {
    state_.DialogActive = true;
    const std::string job = state_.PsFolder + state_.PsFile;
    taken.push_back(job);
    if (files_.rename(job, takenFolder_ + state_.PsFile) && takenCount_)
        ++*takenCount_;
    dialog.loaded = stayOpen;
    dialog.windowState = windowState;
    if (!stayOpen)
        state_.DialogActive = false;
    return dialog;
}

AssistantWorld::AssistantWorld(const std::string& userName) : registry(testRegistry.registry()) {
    const std::string base = root.folder();
    for (const char* folder :
         {"registry", "machine", "user", "ts", "temp", "local", "desktop", "profile", "runtime", "config", "taken"})
        fs::create_directories(root.path() / folder);
    fs::permissions(root.path() / "runtime", fs::perms::owner_all, fs::perm_options::replace);
    root.write("profile/ntuser.dat", "");

    machineFolder = base + "machine/";
    userFolder = base + "user/";
    tsFolder = base + "ts/";
    tempFolder = base + "temp/";
    localAppData = base + "local/";
    desktopFolder = base + "desktop/";
    takenFolder = base + "taken/";

    env.set("username", userName);
    env.set("temp", base + "temp");
    env.set("LOCALAPPDATA", base + "local");
    env.set("XDG_DATA_HOME", base + "local");
    env.set("XDG_CONFIG_HOME", base + "config");
    env.set("userprofile", base + "profile");
    env.set("XDG_RUNTIME_DIR", base + "runtime");
    env.set("XDG_SESSION_ID", "test" + std::to_string(std::random_device{}()));

    os = platform::makeNativePlatform();
    report = std::make_unique<assistant::ErrorReport>(*os, registry, view, state,
                                                      [this](int exitCode) { endedWith = exitCode; });
    services = std::make_unique<Services>(Services{*os, registry, *report, view});
    context = std::make_unique<forms::Context>(forms::Context{*services, state, texts, naming, view});

    registry.SetRegValue(ShellFoldersPath, "Desktop", base + "desktop");
    registry.SetRegValue(ShellFoldersPath, "Local AppData", base + "local");
    setMachine("psdir", machineFolder);
    setUser("psdir", userFolder);
    setMachine("language", "2");
}

void AssistantWorld::setMachine(const std::string& name, const std::string& value) {
    registry.SetRegValue(MachineKeyPath, name, value);
}

void AssistantWorld::setUser(const std::string& name, const std::string& value) {
    registry.SetRegValue(UserKeyPath, name, value);
}

std::string AssistantWorld::user(const std::string& name) const {
    return registry.GetRegValue(UserKeyPath, name);
}

std::string AssistantWorld::fileAt(const std::string& path, std::chrono::system_clock::time_point when) const {
    writeJob(path);
    fs::last_write_time(path, std::chrono::file_clock::from_sys(when));
    return path;
}

std::vector<std::string> AssistantWorld::logLines() const {
    std::ifstream in(logFile(), std::ios::binary);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line)) {
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
