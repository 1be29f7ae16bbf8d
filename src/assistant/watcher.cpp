// The watcher: the resident form's one-second timer. Each tick checks whether the assistant must
// end, keeps the tray icon in step with the user's MultiDoc queue, adopts jobs that were printed
// without a user name, and hands the next job of this user to the job dialog. It never handles two
// jobs at once: while the dialog is loaded a tick does nothing but log.
//
// Every statement of a tick runs with errors ignored: an unreachable folder simply yields no job,
// a failed move is tried again on the next tick.
//
// The spool folders may be shared with every other user. A job, a queued document or anything
// else this user will read is the user's own plain file: a file of the right name that somebody
// else put there, or a pipe or device, is not seen at all, so it can neither be taken nor hold up
// a tick. Only the terminal-server folder searched for every user's jobs (TsName "*") takes plain
// files of any owner, as it exists to.

#include "assistant/resident_form.h"
#include "assistant/runtime_helpers.h"
#include "base/text.h"

namespace pl::assistant {

void ResidentForm::Timer1_Timer() {
    forms::AppState& st = state();
    platform::Platform& os = services().os;

    // Placing the end marker into the machine spool folder ends every user's assistant within a
    // second. Only the exact lower-case name counts.
    bool endMarker = false;
    ignoringErrors([&] { endMarker = firstMatch(st.PsDirMachine + std::string(EndMarkerName)) == EndMarkerName; });
    if (endMarker) {
        endProcess();
        return;
    }

    // Started as the companion of one program, the assistant ends with it.
    if (!st.CommandLine.empty()) {
        bool alive = true;
        ignoringErrors([&] { alive = os.processes().isRunning(st.TsCommandPid); });
        if (!alive) {
            endProcess();
            return;
        }
    }

    log("Dialog geoeffnet...");
    if (st.DialogActive)
        return;

    // The same user name for the whole tick; nothing within one tick can change it.
    std::string user;
    ignoringErrors([&] { user = userName(); });

    // The tray icon is visible exactly while this user has MultiDoc documents waiting to be merged.
    ignoringErrors([&] {
        if (st.TrayCheck == 1 && !st.PsDirUser.empty()) {
            if (!firstMatch(st.PsDirUser + "MultiDoc" + user + "*.ps", platform::Entries::OwnRegularFiles).empty())
                SetTrayIcon(1);
            else
                view().removeTrayIcon();
        } else if (st.TrayCheck != 2) {
            st.TrayCheck = 1; // armed from the next tick on
        }
    });

    // Programs that print without a user name produce "unknown*.ps"; whichever user's assistant sees
    // such a job first takes it over, as the user's own file. Among several assistants the first
    // move wins; where the folder's permissions forbid it, the job stays for somebody who may.
    if (st.Pm5Support) {
        ignoringErrors([&] {
            st.PsFile = firstMatch(st.PsDirMachine + "unknown*.ps", platform::Entries::RegularFiles);
            if (!st.PsFile.empty())
                os.files().moveToOwn(st.PsDirMachine + st.PsFile,
                                     st.PsDirUser + text::ireplaceAll(st.PsFile, "unknown", user));
        });
    }

    // The first job of this user, looking in the machine folder, then the user's own folder, then the
    // terminal-server folder. The first match in name order wins; no other entry is looked at.
    constexpr platform::Entries own = platform::Entries::OwnRegularFiles;
    const platform::Entries tsEntries = st.TsName == "*" ? platform::Entries::RegularFiles : own;
    platform::Entries found = own;
    ignoringErrors([&] {
        st.PsFile = firstMatch(st.PsDirMachine + user + "*.ps", own);
        if (!st.PsFile.empty())
            st.PsFolder = st.PsDirMachine;
    });
    if (st.PsFile.empty() && !st.PsDirUser.empty()) {
        ignoringErrors([&] {
            st.PsFile = firstMatch(st.PsDirUser + user + "*.ps", own);
            if (!st.PsFile.empty())
                st.PsFolder = st.PsDirUser;
        });
    }
    if (st.PsFile.empty() && !st.TsPath.empty()) {
        ignoringErrors([&] {
            st.PsFile = firstMatch(st.TsPath + st.TsName + "*.ps", tsEntries);
            if (!st.PsFile.empty()) {
                st.PsFolder = st.TsPath;
                found = tsEntries;
            }
        });
    }

    // The printer writes a job under a "~" name and renames it when the job is complete; such a
    // first match means "not yet", even when complete jobs follow it.
    if (st.PsFile.empty() || st.PsFile.front() == '~') {
        log("Kein PSFile, - Schalte Debug Fehlermeldungen aus...");
        if (st.DebugMode == "1")
            st.DebugMode = "2"; // an idle assistant logs this once, then stays silent
        return;
    }

    if (st.DebugMode == "2")
        st.DebugMode = "1";
    log("Datei gefunden: " + st.PsFile);

    bool stillThere = false;
    ignoringErrors([&] { stillThere = !freshFirstMatch(st.PsFolder + st.PsFile, found).empty(); });
    if (!stillThere)
        return; // the job vanished in between

    log("oeffne Dialog");
    ignoringErrors([&] {
        // Loading runs the dialog's load sequence, which sets DialogActive; an automatic action may
        // already have finished the job and unloaded the dialog again.
        forms::Form& dialog = dialogs_.loadJobDialog();
        if (dialog.loaded && dialog.windowState != forms::Minimized)
            view().show(dialog);
    });
    log("Warte auf naechstes File...");
}

} // namespace pl::assistant
