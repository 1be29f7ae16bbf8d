#include "assistant/runtime_helpers.h"

#include "base/text.h"
#include "naming/title_cleanup.h"
#include "platform/environment_expand.h"
#include "platform/paths.h"
#include "platform/suite_settings.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace pl::assistant {

namespace {

using platform::ShellFoldersKey;
constexpr std::string_view SuiteKeys[] = {platform::SuiteUserKey, platform::SuiteMachineKey};

// Where the log goes when the user has no profile folder to find a desktop in. The separator tells
// which kind of system this is, so this needs no system test of its own.
std::string fallbackLogFile() {
    return platform::PathSep == '\\' ? "C:\\plAssist.log" : "/tmp/plAssist.log";
}

// The message that says a job file could not be taken out of the spool folder's sight: "Illegal
// Path" / "Unzulässiger Pfad" is the nearest of the language texts to a file that cannot be moved.
constexpr int RenameFailedText = 22;

// How often a free name is drawn before giving up; 50 draws from 999 numbers only fail when the
// folder is nearly full of this user's renamed jobs.
constexpr int RenameAttempts = 50;

std::string desktopFromRegistry(Services& services) {
    std::string desktop = platform::regText(services.registry, ShellFoldersKey, "Desktop");
    return platform::ReplaceEnviron(desktop, services.os.environment());
}

// A number from 1 to 999 from a uniform number in [0, 1), as the classic Int(Rnd * 999) + 1.
int randomJobNumber(platform::Random& random) {
    return std::clamp(static_cast<int>(random.next() * 999) + 1, 1, 999);
}

// Whether `folder` (ending in the separator) holds Ghostscript's console program, under its name on
// 64-bit or 32-bit Windows or on POSIX systems.
bool holdsGhostscript(const std::string& folder, const platform::FileSystem& files) {
    return std::ranges::any_of(std::initializer_list<std::string_view>{"gswin64c.exe", "gswin32c.exe", "gs"},
                               [&](std::string_view program) {
                                   const std::string candidate = folder + std::string(program);
                                   return files.exists(candidate) && !files.isFolder(candidate);
                               });
}

// Ghostscript's console program as the settings may name it: the program itself, or a folder that
// holds it directly or in its "bin", "gs" or "gs/bin" sub-folder.
bool ghostscriptAt(std::string_view location, const platform::FileSystem& files) {
    if (location.empty() || !files.exists(location))
        return false;
    if (!files.isFolder(location))
        return true;
    const std::string base = platform::withTrailingSep(location);
    const std::string sep(1, platform::PathSep);
    return std::ranges::any_of(std::initializer_list<std::string>{base, base + "bin" + sep, base + "gs" + sep,
                                                                  base + "gs" + sep + "bin" + sep},
                               [&](const std::string& folder) { return holdsGhostscript(folder, files); });
}

bool ghostscriptOnPath(Services& services) {
    const std::string path = services.os.environment().get("PATH");
    const char listSep = platform::PathSep == '\\' ? ';' : ':';
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find(listSep, start), path.size());
        const std::string folder = path.substr(start, end - start);
        if (!folder.empty() && holdsGhostscript(platform::withTrailingSep(folder), services.os.files()))
            return true;
        start = end + 1;
    }
    return false;
}

} // namespace

std::string logFilePath(Services& services) {
    try {
        // A user with a profile folder has a desktop; the log lies there where the user sees it.
        // (Searching the folder for "*.*" with folders finds its "." entry on Windows whenever the
        // folder exists; asking for the folder says the same on every system.)
        const std::string profile = services.os.environment().get("userprofile");
        if (!profile.empty() && services.os.files().isFolder(profile))
            return desktopFromRegistry(services) + platform::PathSep + "plAssist.log";
    } catch (...) {
        // A log path that cannot be worked out is no reason to disturb anybody.
    }
    return fallbackLogFile();
}

void DebugWrite(std::string_view line, Services& services) {
    // Opened and closed for every line, so that the log survives a crash and can be read while the
    // assistant runs.
    try {
        std::ofstream log(platform::fsPath(logFilePath(services)), std::ios::binary | std::ios::app);
        log << line << "\r\n";
    } catch (...) {
        // A log that cannot be written is lost.
    }
}

std::string LoadDesktop(Services& services) {
    std::string name;
    std::string step = "Desktop";
    trapErrors(services.errors, "Paperlark1.LoadDesktop", step, [&] {
        std::string path = desktopFromRegistry(services);
        if (path.empty()) {
            step = "SpecialFolders";
            path = services.os.folders().desktop();
        }
        const std::size_t sep = path.rfind(platform::PathSep);
        if (sep == std::string::npos) {
            name = "Desktop";
            return;
        }
        name = path.substr(sep + 1);
        // A platform lookup into a fixed-size buffer may leave its terminating zero behind.
        if (!name.empty() && name.back() == '\0')
            name.pop_back();
    });
    return name;
}

std::string RandomNamePSFile(std::string_view path, std::string_view folder, const texts::Texts& texts,
                             Services& services) {
    std::string result;
    std::string step = "Suche";
    trapErrors(services.errors, "plAssist1.RandomNamePSFile", step, [&] {
        platform::FileSystem& files = services.os.files();
        const std::string job = files.resolveCase(path);
        const bool present = files.exists(job);

        // The "~" takes the job out of the watcher's patterns, so it is never offered twice.
        step = "Umbenennen";
        const std::string prefix = std::string(folder) + "~" + userName(services);
        std::string target;
        bool renamed = false;
        for (int attempt = 0; present && attempt < RenameAttempts; ++attempt) {
            target = prefix + text::number(randomJobNumber(services.os.random())) + ".ps";
            if (files.exists(target))
                continue; // another job of this user holds the number: draw again
            renamed = files.rename(job, target);
            break;
        }
        if (renamed) {
            result = target;
            return;
        }

        step = "Fehlermeldung";
        services.messages.msgBox(texts.text(RenameFailedText) + "\n" + "Permission error: Cannot delete " +
                                     std::string(path),
                                 mb::Exclamation);
        // A rename that reported failure may still have moved the file.
        if (!target.empty() && files.exists(target) && !files.exists(job))
            result = target;
    });
    return result;
}

std::string userName(Services& services) {
    return naming::PsspecialChar(services.os.environment().get("username"), services.errors);
}

bool EncryptionAvailable(Services& services) {
    bool found = false;
    trapErrors(services.errors, "plAssist1.EncryptionAvailable", "", [&] {
        for (std::string_view key : SuiteKeys) {
            std::string location = platform::regText(services.registry, key, "gswin32c");
            platform::ReplaceEnviron(location, services.os.environment());
            if (ghostscriptAt(location, services.os.files())) {
                found = true;
                return;
            }
        }
        found = ghostscriptOnPath(services);
    });
    return found;
}

} // namespace pl::assistant
