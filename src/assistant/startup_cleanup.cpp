// Stale files and settings removed at every start, before anything else looks at them.

#include "assistant/local_time.h"
#include "assistant/resident_form.h"
#include "assistant/suite_keys.h"
#include "platform/paths.h"

#include <vector>

namespace pl::assistant {
namespace {

// A job renamed out of the watcher's sight ("~" names) that the converter never took over is kept
// this many days, in case someone wants it back, then it is deleted.
constexpr int StaleJobDays = 3;

constexpr std::string_view VirtualStoreKey =
    "HKEY_CURRENT_USER\\Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\tobrin\\PaperlarkXP";

} // namespace

// Collects the matches first and deletes afterwards, so that deleting does not disturb the search.
// A file that cannot be deleted (in use, no permission) is left alone.
void ResidentForm::deleteStaleFiles(const std::string& searchPath, bool onlyOld) {
    platform::FileSystem& files = services().os.files();
    const auto [folder, pattern] = splitSearchPath(searchPath);
    const TimePoint cutoff = localDayStart(services().os.clock().now(), StaleJobDays);

    std::vector<std::string> doomed;
    for (const auto& entry : files.findAll(folder, pattern)) {
        const std::string path = folder + entry.name;
        if (onlyOld) {
            const auto date = files.modified(path);
            if (!date || *date >= cutoff)
                continue;
        }
        doomed.push_back(path);
    }
    for (const auto& path : doomed) {
        try {
            files.remove(path);
        } catch (...) {
        }
    }
}

// Temporaries named "~df..." left in the temp folder go whatever their age: a new logon session
// has no use for any of them.
void ResidentForm::KillTempDfFiles() {
    const std::string temp = services().os.environment().get("temp");
    if (!temp.empty())
        deleteStaleFiles(temp + platform::PathSep + "~df*.*", false);
}

void ResidentForm::KillOldPsdirTempFiles() {
    const std::string psdir = regText(services().registry, MachineKey, "psdir");
    if (!psdir.empty())
        deleteStaleFiles(psdir + "~*.*", true);
}

void ResidentForm::KillOldLocalTempFiles() {
    const std::string local = regText(services().registry, ShellFoldersKey, "Local AppData");
    if (!local.empty())
        deleteStaleFiles(local + platform::PathSep + "Paperlark_XP" + platform::PathSep + "~*.*", true);
}

// An unprivileged write to the machine key lands in the user's virtual store and from then on hides
// the machine's own values from this user; deleting the copy lets them show through again.
void ResidentForm::CleanVirtualStoreKey() {
    platform::Registry& registry = services().registry;
    const auto values = registry.EnumRegStringValues(VirtualStoreKey);
    if (values && !values->empty())
        registry.DeleteRegEntry(VirtualStoreKey, "");
}

// The same for files the suite's programs wrote into their own folder without the right to.
void ResidentForm::CleanVirtualStoreFolder() {
    const std::string local = services().os.environment().get("LOCALAPPDATA");
    if (local.empty())
        return;
    const char sep = platform::PathSep;
    const std::string folder = local + sep + "VirtualStore" + sep + "Program Files" + sep + "Paperlark_XP" + sep;
    platform::FileSystem& files = services().os.files();
    for (const auto& entry : files.findAll(folder, "*.*", true)) {
        if (entry.name == "." || entry.name == "..")
            continue;
        try {
            files.remove(folder + entry.name);
        } catch (...) {
        }
    }
    try {
        files.removeFolder(folder);
    } catch (...) {
    }
}

} // namespace pl::assistant
