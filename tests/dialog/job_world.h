#pragma once
// The world a job dialog runs in, on real folders and a real registry store below a temporary
// folder: machine and user spool folders, the installation's folder ("pldir"), the home of the user
// "anna" with her profile folder, and a desktop; English texts; errors recorded. `ViewT` draws the
// forms: the scripted view of the form-model tests or the real Qt view.

#include "forms/context.h"
#include "platform/paths.h"
#include "platform/platform.h"
#include "platform/program_names.h"
#include "support/recording_errors.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace pl::test {

// One start of the recording converter: its working folder and its arguments.
struct RecordedCall {
    std::string folder;
    std::vector<std::string> args;
};

template <class ViewT> class JobWorld {
public:
    JobWorld() {
        for (const auto& folder : {machineSpool, userSpool, suite, userProfiles, desktop, root.folder() + "config",
                                   root.folder() + "data", root.folder() + "run"})
            std::filesystem::create_directories(folder);
        std::filesystem::permissions(root.folder() + "run", std::filesystem::perms::owner_all);
        // Everything the program may look at lies in the temporary folder.
        env.set("HOME", home);
        env.set("XDG_CONFIG_HOME", root.folder() + "config");
        env.set("XDG_DATA_HOME", root.folder() + "data");
        env.set("XDG_RUNTIME_DIR", root.folder() + "run");
        env.set("TMPDIR", root.folder());
        env.set("username", "anna");
        env.set("userprofile", home);
        // No Ghostscript on the way: whether encryption is offered is up to each test.
        env.set("PATH", root.folder() + "bin");
        os = platform::makeNativePlatform();
        services = std::make_unique<Services>(Services{*os, registry, errors, view});
        context = std::make_unique<forms::Context>(forms::Context{*services, state, texts, naming, view});

        setMachine("pldir", suite);
        setUser("language", "2"); // English
        registry.SetRegValue("HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", "Desktop",
                             root.folder() + "desktop");
        state.PsDirMachine = machineSpool;
        state.PsDirUser = userSpool;
    }
    JobWorld(const JobWorld&) = delete;
    JobWorld& operator=(const JobWorld&) = delete;

    void setUser(const std::string& name, const std::string& value) {
        registry.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", name, value);
    }
    void setMachine(const std::string& name, const std::string& value) {
        registry.SetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", name, value);
    }
    std::string user(const std::string& name) const {
        return registry.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", name);
    }

    // A PostScript job whose "%%Title:" comment holds `title`; returns its full path.
    std::string writeJob(const std::string& folder, const std::string& name, const std::string& title) const {
        return root.write(std::filesystem::relative(folder + name, root.path()).string(),
                          "%!PS-Adobe-3.0\r\n%%Creator: a printer driver\r\n%%Title: " + title +
                              "\r\n%%Pages: 1\r\n%%EndComments\r\nshowpage\r\n%%EOF\r\n");
    }
    // Hands the job `name` in `folder` to the dialog, as the watcher does.
    void offerJob(const std::string& folder, const std::string& name) {
        state.PsFolder = folder;
        state.PsFile = name;
    }
    // A job in the machine spool folder, offered to the dialog.
    void offerMachineJob(const std::string& title = "Report", const std::string& name = "anna0001.ps") {
        writeJob(machineSpool, name, title);
        offerJob(machineSpool, name);
    }
    // anna's MultiDoc queue file number `n`.
    std::string writeQueued(int n, const std::string& title = "Queued") const {
        return writeJob(userSpool, "MultiDocanna" + std::to_string(n) + ".ps", title);
    }
    // The titles of anna's queue files in number order, as long as the run is unbroken.
    std::vector<std::string> queueTitles() const {
        std::vector<std::string> titles;
        for (int n = 1; exists(userSpool + "MultiDocanna" + std::to_string(n) + ".ps"); ++n) {
            const std::string content = root.read("spool/MultiDocanna" + std::to_string(n) + ".ps");
            const auto at = content.find("%%Title: ") + 9;
            titles.push_back(content.substr(at, content.find('\r', at) - at));
        }
        return titles;
    }
    // The recording converter (a program that writes down how it was called) as the suite's converter.
    void installRecordingConverter(const std::string& program) {
        env.set("RECORDING_CONVERTER_LOG", root.folder() + "calls.txt");
        std::filesystem::copy_file(program, suite + platform::programFileName("Paperlark.exe"));
    }
    // Its calls so far, after waiting until at least `count` have arrived (or a timeout): it is
    // started as a real process and not waited for.
    std::vector<RecordedCall> waitForCalls(std::size_t count,
                                           std::chrono::milliseconds timeout = std::chrono::seconds(10)) const {
        const auto until = std::chrono::steady_clock::now() + timeout;
        for (;;) {
            std::vector<RecordedCall> calls; // complete ones only: "=== end" closes each
            RecordedCall current;
            std::istringstream lines(root.read("calls.txt"));
            for (std::string line; std::getline(lines, line);) {
                if (line == "=== call")
                    current = {};
                else if (line == "=== end")
                    calls.push_back(current);
                else if (line.starts_with("folder="))
                    current.folder = line.substr(7);
                else if (line.starts_with("arg="))
                    current.args.push_back(line.substr(4));
            }
            if (calls.size() >= count || std::chrono::steady_clock::now() > until)
                return calls;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    bool exists(const std::string& path) const { return std::filesystem::exists(path); }
    // The reported errors, one per line; empty when there were none.
    std::string errorList() const {
        std::string list;
        for (const auto& e : errors.entries)
            list += "error " + std::to_string(e.number) + " in " + e.tag + " at \"" + e.step + "\"\n";
        return list;
    }

    TestRegistry hives; // first: every store made from the environment uses its hives
    TempDir root;
    ScopedEnv env;
    // Folder values end in the system's separator, as the program writes them.
    std::string machineSpool = root.folder() + "machine" + platform::PathSep; // PsDirMachine
    std::string userSpool = root.folder() + "spool" + platform::PathSep;      // PsDirUser
    std::string suite = root.folder() + "suite" + platform::PathSep;          // pldir: the installation's profiles
    std::string home = root.folder() + "home";                                // userprofile
    std::string userProfiles = home + platform::PathSep + "Paperlark" + platform::PathSep;
    std::string desktop = root.folder() + "desktop" + platform::PathSep; // as the shell folders name it

    std::unique_ptr<platform::Platform> os;
    platform::Registry& registry = hives.registry();
    RecordingErrors errors;
    ViewT view;
    std::unique_ptr<Services> services;
    forms::AppState state;
    texts::Texts texts;
    naming::NamingState naming;
    std::unique_ptr<forms::Context> context;
};

} // namespace pl::test
