#include "platform/win32/wide_text.h"
#include "platform/win32/win32_services.h"

#include <windows.h>

namespace pl::platform::win32 {

std::string Win32Environment::get(std::string_view name) const {
    // The system compares variable names without regard to case, as the callers expect. The wide
    // function, because the ANSI one is known to cut UTF-8 values short by counting characters.
    const std::string key(name);
    if (key.empty() || key.find('=') != std::string::npos)
        return {};
    const std::wstring wideName = widen(key);
    std::wstring value(256, L'\0');
    for (;;) {
        const DWORD length = GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
        if (length == 0)
            return {};
        if (length < value.size()) {
            value.resize(length);
            return narrow(value);
        }
        value.resize(length); // too small: `length` counts the terminating NUL
    }
}

std::string errorText(unsigned long code) {
    char* buffer = nullptr;
    const DWORD length =
        FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, code, 0, reinterpret_cast<LPSTR>(&buffer), 0, nullptr);
    std::string text = length > 0 && buffer ? std::string(buffer, length) : "error " + std::to_string(code);
    LocalFree(buffer);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
        text.pop_back();
    return text;
}

} // namespace pl::platform::win32
