// What one tick of the spool-folder watcher costs: CPU time and folder reads of an idle tick and of
// a tick that finds a job, with empty spool folders and beside 1,000 other users' jobs in the shared
// machine folder; with the folder change service and, for comparison, reading every folder on every
// tick. Five plain reads of the crowded folder are measured in the same run as the reference.

#include "assistant/error_report.h"
#include "assistant/folder_search.h"
#include "assistant/resident_form.h"
#include "forms/context.h"
#include "platform/folder_changes.h"
#include "platform/platform.h"
#include "platform/registry.h"

#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace pl;

double cpuMicroseconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e6 + static_cast<double>(t.tv_nsec) / 1e3;
}

void writeFile(const std::string& path) {
    std::ofstream(path) << "%!PS-Adobe-3.0\n";
}

// A view that shows nothing: the benchmark measures the watcher, not a front-end.
class QuietView : public forms::View {
public:
    int msgBox(std::string_view, int, std::string_view) override { return mb::Ok; }
    std::optional<std::string> askSaveFileName(const forms::SaveDialogRequest&) override { return std::nullopt; }
    std::string clipboardText() override { return {}; }
    void setClipboardText(std::string_view) override {}
    void addTrayIcon(std::string_view) override {}
    void removeTrayIcon() override {}
    void showPopupMenu(forms::Form&, std::string_view) override {}
    void show(forms::Form&) override {}
    void hide(forms::Form&) override {}
    void unload(forms::Form&) override {}
    void bringToFront(forms::Form&) override {}
    void setFocus(forms::Form&, std::string_view) override {}
    void refresh(forms::Form&) override {}
    void doEvents() override {}
    void sendKeys(std::string_view) override {}
    int twipsPerPixel() const override { return 15; }
};

// Takes each job at once, as a dialog with an automatic action does: moves it out of the spool folder.
class TakingHost : public forms::JobDialogHost {
public:
    TakingHost(forms::AppState& state, platform::FileSystem& files, std::string taken)
        : state_(state), files_(files), taken_(std::move(taken)) {}
    forms::Form& loadJobDialog() override {
        state_.DialogActive = true;
        files_.rename(state_.PsFolder + state_.PsFile, taken_ + state_.PsFile);
        state_.DialogActive = false;
        return dialog_;
    }

private:
    forms::AppState& state_;
    platform::FileSystem& files_;
    std::string taken_;
    forms::Form dialog_{"plDialog1"};
};

struct Figures {
    double idleMicros = 0, idleScans = 0, jobMicros = 0, jobScans = 0, busyMicros = 0, busyScans = 0;
};

Figures measure(const std::string& base, bool withChanges) {
    auto os = platform::makeNativePlatform();
    platform::Registry registry(os->registry());
    QuietView view;
    forms::AppState state;
    assistant::ErrorReport report(*os, registry, view, state,
                                  [&](int exitCode) { os->processes().exitCurrent(exitCode); });
    Services services{*os, registry, report, view};
    texts::Texts texts;
    naming::NamingState naming;
    forms::Context context{services, state, texts, naming, view};
    auto changes = withChanges ? platform::makeFolderChanges() : nullptr;
    TakingHost host(state, os->files(), base + "taken/");
    assistant::ResidentForm form(context, host, changes.get(), [] { return std::string("alice"); });
    state.PsDirMachine = base + "machine/";
    state.PsDirUser = base + "user/";
    state.TsPath = base + "ts/";
    state.TsName = "alice";

    for (int i = 0; i < 3; ++i)
        form.Timer1_Timer(); // arms the tray check, learns the answers

    Figures f;
    constexpr int IdleTicks = 2000;
    auto scans = form.searches().scans();
    double start = cpuMicroseconds();
    for (int i = 0; i < IdleTicks; ++i)
        form.Timer1_Timer();
    f.idleMicros = (cpuMicroseconds() - start) / IdleTicks;
    f.idleScans = static_cast<double>(form.searches().scans() - scans) / IdleTicks;

    constexpr int JobTicks = 200;
    double total = 0;
    std::uint64_t jobScans = 0;
    for (int i = 0; i < JobTicks; ++i) {
        form.Timer1_Timer(); // settle: the answers are known again before the job arrives
        scans = form.searches().scans();
        const std::string name = "alice_job" + std::to_string(i) + ".ps";
        writeFile(state.PsDirMachine + name);
        start = cpuMicroseconds();
        form.Timer1_Timer();
        total += cpuMicroseconds() - start;
        jobScans += form.searches().scans() - scans;
        if (fs::exists(state.PsDirMachine + name) || !fs::remove(base + "taken/" + name))
            std::fprintf(stderr, "the job was not taken\n");
    }
    f.jobMicros = total / JobTicks;
    f.jobScans = static_cast<double>(jobScans) / JobTicks;

    // Idle while other users print: a job of someone else arrives before every tick.
    total = 0;
    jobScans = 0;
    for (int i = 0; i < JobTicks; ++i) {
        const std::string other = "zora_" + std::to_string(i) + ".ps";
        writeFile(state.PsDirMachine + "~" + other);
        fs::rename(state.PsDirMachine + "~" + other, state.PsDirMachine + other);
        scans = form.searches().scans();
        start = cpuMicroseconds();
        form.Timer1_Timer();
        total += cpuMicroseconds() - start;
        jobScans += form.searches().scans() - scans;
    }
    for (int i = 0; i < JobTicks; ++i)
        fs::remove(state.PsDirMachine + "zora_" + std::to_string(i) + ".ps");
    f.busyMicros = total / JobTicks;
    f.busyScans = static_cast<double>(jobScans) / JobTicks;
    return f;
}

double fivePlainScans(const std::string& folder) {
    auto os = platform::makeNativePlatform();
    assistant::FolderSearch plain(os->files(), nullptr);
    constexpr int Rounds = 400;
    const double start = cpuMicroseconds();
    for (int r = 0; r < Rounds; ++r)
        for (int i = 0; i < 5; ++i)
            plain.firstMatch(folder, "alice*.ps");
    return (cpuMicroseconds() - start) / Rounds;
}

void report(const char* label, const Figures& f) {
    std::printf("  %s\n", label);
    std::printf("    idle tick                              %8.2f us CPU  %4.2f folder reads\n", f.idleMicros,
                f.idleScans);
    std::printf("    tick that finds a job                  %8.2f us CPU  %4.2f folder reads\n", f.jobMicros,
                f.jobScans);
    std::printf("    idle tick, another user's job arrived  %8.2f us CPU  %4.2f folder reads\n", f.busyMicros,
                f.busyScans);
}

} // namespace

int main() {
    const fs::path base =
        fs::temp_directory_path() / ("paperlark-tick-bench-" + std::to_string(std::random_device{}()));
    for (const char* folder : {"machine", "user", "ts", "taken", "registry"})
        fs::create_directories(base / folder);
    setenv("PAPERLARK_REGISTRY_DIR", (base / "registry").c_str(), 1);
    const std::string root = base.string() + "/";

    std::printf("watcher tick (user alice; machine, user and terminal-server folders)\n");
    std::printf("empty spool folders\n");
    report("with folder change service", measure(root, true));
    report("reading every folder every tick", measure(root, false));

    for (int i = 0; i < 1000; ++i)
        writeFile(root + "machine/user" + std::to_string(i % 50) + "_" + std::to_string(i) + ".ps");
    std::printf("1,000 other users' jobs in the machine folder\n");
    report("with folder change service", measure(root, true));
    report("reading every folder every tick", measure(root, false));
    std::printf("reference: five plain reads of that machine folder: %.2f us CPU\n", fivePlainScans(root + "machine/"));

    fs::remove_all(base);
    return 0;
}
