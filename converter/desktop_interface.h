#pragma once
// The desktop's own dialogs for the converter, or nothing when the converter was built without a
// desktop toolkit. Only called where a desktop is there.

#include "converter/user_interface.h"

#include <memory>

namespace pl::converter {

std::unique_ptr<UserInterface> makeDesktopInterface();

} // namespace pl::converter
