// Umlauts through the clipboard. Its 8-bit text (CF_TEXT) is converted by the keyboard locale's code
// page, not the program's, so the program's UTF-8 goes there as Unicode text: what one program puts
// there, another reads as the same characters, and the program reads back what it put.

#include "platform/win32/wide_text.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace pl::platform::win32 {
namespace {

void putUnicode(const std::wstring& text) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    std::memcpy(GlobalLock(memory), text.c_str(), size);
    GlobalUnlock(memory);
    EXPECT_NE(SetClipboardData(CF_UNICODETEXT, memory), nullptr);
    CloseClipboard();
}

std::wstring takeUnicode() {
    std::wstring text;
    if (!OpenClipboard(nullptr))
        return text;
    if (HANDLE memory = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(GlobalLock(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
}

TEST(clipboard_win32, umlauts_survive_the_round_trip_as_unicode_text) {
    ASSERT_EQ(GetACP(), 65001u) << "the manifest sets the code page";
    const std::string utf8 = "Grüße aus Köln – 5 €";
    putUnicode(widen(utf8));
    const std::wstring seen = takeUnicode();
    EXPECT_EQ(seen, L"Gr\u00fc\u00dfe aus K\u00f6ln \u2013 5 \u20ac") << "another program sees the characters";
    EXPECT_EQ(narrow(seen), utf8);
    EXPECT_EQ(narrow(widen("ÄÖÜäöüß")), "ÄÖÜäöüß");
}

} // namespace
} // namespace pl::platform::win32
