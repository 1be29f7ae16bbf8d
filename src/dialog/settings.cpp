#include "dialog/settings.h"

namespace pl::dialog {

bool isAbsent(std::string_view value) {
    return value.empty() || value == NotFoundMarker;
}

std::string userThenMachine(const platform::Registry& registry, std::string_view valueName) {
    std::string value = registry.GetRegValue(UserKey, valueName);
    if (isAbsent(value))
        value = registry.GetRegValue(MachineKey, valueName);
    return isAbsent(value) ? std::string() : value;
}

} // namespace pl::dialog
