#include "platform/win32/win32_services.h"

#include <windows.h>

namespace pl::platform::win32 {

Win32InstanceLock::~Win32InstanceLock() {
    if (mutex_ != nullptr)
        CloseHandle(static_cast<HANDLE>(mutex_)); // the last handle gone, the name is free again
}

bool Win32InstanceLock::acquire(std::string_view name) {
    if (mutex_ != nullptr)
        return heldName_ == name;
    // "Local\" is the namespace of the logon session: on a terminal server every user's session
    // has its own assistant. A "\" inside the name itself would name a namespace.
    std::string objectName = "Local\\";
    for (const char c : name)
        objectName.push_back(c == '\\' ? '_' : c);
    HANDLE mutex = CreateMutexA(nullptr, FALSE, objectName.c_str());
    if (mutex == nullptr)
        return true; // nothing to hold a lock with: better a second assistant than none at all
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        return false;
    }
    mutex_ = mutex;
    heldName_ = std::string(name);
    return true;
}

} // namespace pl::platform::win32
