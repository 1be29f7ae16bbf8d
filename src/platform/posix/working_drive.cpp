#include "platform/working_drive.h"

namespace pl::platform {

bool changeWorkingDrive(std::string_view) {
    return false; // one tree, no drives
}

} // namespace pl::platform
