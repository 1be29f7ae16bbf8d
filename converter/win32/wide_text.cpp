#include "converter/win32/wide_text.h"

#include <windows.h>

namespace pl::converter::win32 {

std::wstring wide(std::string_view utf8) {
    if (utf8.empty())
        return {};
    const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    std::wstring out(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), out.data(), size);
    return out;
}

namespace {

std::string inCodePage(std::wstring_view text, UINT codePage) {
    if (text.empty())
        return {};
    const int size =
        WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), out.data(), size, nullptr, nullptr);
    return out;
}

} // namespace

std::string narrow(std::wstring_view text) {
    return inCodePage(text, CP_UTF8);
}

std::string ansi(std::string_view utf8) {
    return inCodePage(wide(utf8), CP_ACP);
}

} // namespace pl::converter::win32
