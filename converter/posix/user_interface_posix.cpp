#include "converter/desktop_interface.h"
#include "converter/user_interface.h"

#include "platform/environment.h"

namespace pl::converter {

// A desktop session names its display; a converter started from a service, a cron job or a remote
// shell has none, and must not wait for an answer nobody can give.
std::unique_ptr<UserInterface> makeUserInterface(const platform::Environment& environment) {
    if (!environment.get("DISPLAY").empty() || !environment.get("WAYLAND_DISPLAY").empty()) {
        if (auto desktop = makeDesktopInterface())
            return desktop;
    }
    return makeConsoleInterface();
}

} // namespace pl::converter
