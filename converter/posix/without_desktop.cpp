#include "converter/desktop_interface.h"

namespace pl::converter {

// Built without Qt: failures go to standard error only, and nobody is asked for a password.
std::unique_ptr<UserInterface> makeDesktopInterface() {
    return nullptr;
}

} // namespace pl::converter
