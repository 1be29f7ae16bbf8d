#include "platform/working_drive.h"

#include <direct.h>

namespace pl::platform {

bool changeWorkingDrive(std::string_view drive) {
    if (drive.size() < 2 || drive[1] != ':')
        return false;
    const char letter = drive[0] >= 'a' && drive[0] <= 'z' ? static_cast<char>(drive[0] - 'a' + 'A') : drive[0];
    if (letter < 'A' || letter > 'Z')
        return false;
    return _chdrive(letter - 'A' + 1) == 0;
}

} // namespace pl::platform
