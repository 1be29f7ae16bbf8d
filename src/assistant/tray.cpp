// The tray icon, its menu, and why the hidden form cannot be closed by the user.

#include "assistant/resident_form.h"
#include "assistant/suite_keys.h"
#include "base/text.h"
#include "platform/paths.h"

#include <cmath>
#include <cstdio>

namespace pl::assistant {
namespace {

constexpr std::string_view ShowTag = "frmPlAssist1.showplAssist.click";

// How often the queue search is tried: once as configured and once more after the user folder
// was set to its default.
constexpr int QueueSearchAttempts = 2;
// Job numbers have six digits.
constexpr int LastJobNumber = 999999;

std::string upperHex(float x) {
    char digits[24];
    std::snprintf(digits, sizeof digits, "%lX", static_cast<unsigned long>(std::lround(x)));
    return digits;
}

std::string sixDigits(int n) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%06d", n);
    return digits;
}

} // namespace

TrayAction trayActionFor(float x) {
    const std::string hex = upperHex(x);
    if (hex == "1E2D" || hex == "1824") // left double-click at 15 and 12 twips per pixel
        return TrayAction::BringForward;
    if (hex == "1E0F") // left button down, at 15 twips per pixel only
        return TrayAction::ShowMenu;
    if (hex == "1E3C" || hex == "1830") // right button down at 15 and 12 twips per pixel
        return TrayAction::ShowMenu;
    return TrayAction::None;
}

void ResidentForm::SetTrayIcon(int mode) {
    try {
        tray_ = TrayIconData{};
        const std::u32string tip = text::decode(control("txtTooltip").text);
        tray_.tip = text::encode(tip.substr(0, 63));
        tray_.hasIcon = mode == 1;
        view().addTrayIcon(tray_.tip);
    } catch (...) {
        // A failed add of the icon changes nothing.
    }
}

// The tray icon's mouse messages arrive as mouse moves over the hidden text box, with the message
// number in X, multiplied by the screen's twips per pixel.
void ResidentForm::txtTooltip_MouseMove(int /*button*/, int /*shift*/, float x, float /*y*/) {
    const TrayAction action = trayActionFor(x);
    if (action == TrayAction::None)
        return;
    view().bringToFront(*this);
    view().doEvents();
    if (action == TrayAction::ShowMenu)
        view().showPopupMenu(*this, "taskmenu");
}

// Turns the first queued MultiDoc document into an ordinary job of the user; the watcher finds it
// on its next tick and opens the job dialog for it.
void ResidentForm::mnShowPlAssist_Click() {
    forms::AppState& st = state();
    platform::FileSystem& files = services().os.files();
    try {
        st.StepName = "1";
        st.TrayCheck = 2; // the watcher leaves the icon alone until the dialog is done
        view().removeTrayIcon();

        st.StepName = "2";
        const std::string user = userName();
        std::string queued;
        for (int attempt = 1; attempt <= QueueSearchAttempts; ++attempt) {
            st.StepName = "6 - " + text::number(attempt);
            queued = freshFirstMatch(st.PsDirUser + "MultiDoc" + user + "*.ps", platform::Entries::OwnRegularFiles);
            st.StepName = "9 - " + text::number(attempt);
            if (!queued.empty() || !st.PsDirUser.empty())
                break;
            // No user folder yet: the default one, remembered for the printer and later starts.
            st.PsDirUser = regText(services().registry, ShellFoldersKey, "Local AppData") + platform::PathSep +
                           "Paperlark_XP" + platform::PathSep;
            services().registry.SetRegValue(UserKey, "psdir", st.PsDirUser);
        }
        if (queued.empty())
            return; // nothing waiting, no dialog

        std::string job;
        for (int number = 1; number <= LastJobNumber; ++number) {
            st.StepName = "12 - " + text::number(number);
            const std::string candidate = st.PsDirUser + user + sixDigits(number) + ".ps";
            if (!files.exists(candidate)) {
                job = candidate;
                break;
            }
        }
        if (job.empty())
            raise(err::FileAlreadyExists);

        const std::string from = st.PsDirUser + queued;
        st.StepName = "14 - name " + from + " as " + job;
        if (!files.rename(from, job))
            raise(err::PathFileAccessError);
    } catch (...) {
        services().errors.report(ShowTag, st.StepName, currentError(),
                                 "psdir = " + st.PsDirUser + "\r\nUsername = " + rawUserName_());
    }
}

// Closing the hidden form from its control menu would end the assistant without the user meaning
// to; on Citrix an administrator may need exactly that, hence the switch.
void ResidentForm::Form_QueryUnload(int& cancel, int unloadMode) {
    if (unloadMode == UnloadFromControlMenu && !state().CitrixUnload) {
        cancel = 1;
        view().sendKeys("%{TAB}"); // move the focus on to another window
    }
}

void ResidentForm::Form_KeyDown(int& keyCode, int shift) {
    if (keyCode == KeyF4 && shift == ShiftAlt)
        keyCode = 0;
}

} // namespace pl::assistant
