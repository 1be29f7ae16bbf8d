#pragma once
// A complete assistant world for the Qt views: real folders below a fresh temporary folder (machine
// and user spool folders, the suite folder, a home and a desktop), a registry store of its own, the
// native platform, the real Qt view, and errors recorded so that a test can insist on none. The
// user is "anna"; the texts are English.

#include "forms/context.h"
#include "platform/platform.h"
#include "support/recording_errors.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"
#include "ui/qt/qt_view.h"

#include <memory>
#include <string>

namespace pl::test {

inline constexpr const char* UserKey = "HKCU\\Software\\tobrin\\PaperlarkXP";
inline constexpr const char* MachineKey = "HKLM\\Software\\tobrin\\PaperlarkXP";

class QtWorld {
public:
    QtWorld();
    QtWorld(const QtWorld&) = delete;
    QtWorld& operator=(const QtWorld&) = delete;

    void setUser(const std::string& name, const std::string& value);
    void setMachine(const std::string& name, const std::string& value);

    // A PostScript job whose "%%Title:" comment holds `title`; returns its full path.
    std::string writeJob(const std::string& folder, const std::string& name, const std::string& title) const;
    bool exists(const std::string& path) const;
    // Hands the job `name` in `folder` to the dialog, as the watcher does.
    void offerJob(const std::string& folder, const std::string& name);
    // The reported errors, one per line; empty when there were none.
    std::string errorList() const;

    TestRegistry hives; // first: stores made from the environment use its hives
    TempDir root;
    ScopedEnv env;
    std::string machineSpool, userSpool, suite, home, desktop;

    std::unique_ptr<platform::Platform> os;
    RecordingErrors errors;
    qtui::QtView view;
    std::unique_ptr<Services> services;
    forms::AppState state;
    texts::Texts texts;
    naming::NamingState naming;
    std::unique_ptr<forms::Context> context;
};

} // namespace pl::test
