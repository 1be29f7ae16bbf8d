#include "ui/win32/drawing.h"

#include <algorithm>
#include <cmath>

namespace pl::winui {

int twipsPerPixelAt(int dpi) {
    if (dpi <= 0)
        return 15;
    return std::max(1, static_cast<int>(std::lround(static_cast<double>(TwipsPerInch) / dpi)));
}

int dpiOf(HWND hwnd) {
    // GetDpiForWindow exists from Windows 10 on; before, every monitor has the system's DPI.
    using DpiForWindow = UINT(WINAPI*)(HWND);
    static const auto forWindow = reinterpret_cast<DpiForWindow>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("user32.dll"), "GetDpiForWindow")));
    if (forWindow != nullptr && hwnd != nullptr) {
        if (const UINT dpi = forWindow(hwnd))
            return static_cast<int>(dpi);
    }
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}

int toPixels(int twips, int twipsPerPixel) {
    return static_cast<int>(std::lround(static_cast<double>(twips) / twipsPerPixel));
}

COLORREF colorOf(forms::Rgb value) {
    if ((value & 0x80000000u) != 0)
        return GetSysColor(static_cast<int>(value & 0xFF));
    return static_cast<COLORREF>(value & 0xFFFFFF);
}

FontCache::~FontCache() {
    for (auto& [key, font] : fonts_)
        DeleteObject(font);
}

HFONT FontCache::font(const forms::Control& control, int dpi) {
    const int size = static_cast<int>(std::lround(control.fontSize * 100));
    const auto key = std::make_tuple(control.fontName, size, control.fontBold, control.fontUnderline, dpi);
    if (auto found = fonts_.find(key); found != fonts_.end())
        return found->second;
    const int height = -MulDiv(size, dpi, 7200);
    HFONT font = CreateFontA(height, 0, 0, 0, control.fontBold ? FW_BOLD : FW_NORMAL, FALSE, control.fontUnderline,
                             FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                             DEFAULT_PITCH | FF_SWISS, control.fontName.c_str());
    fonts_.emplace(key, font);
    return font;
}

KeptBackground::~KeptBackground() {
    if (bitmap_ != nullptr)
        DeleteObject(bitmap_);
}

bool KeptBackground::update(const dialog::Background& background, forms::Rgb backColor, SIZE inside,
                            int scaleHeight, int twipsPerPixel) {
    const auto wanted = std::make_tuple(background.gradient, background.gradientStart, background.gradientEnd,
                                        backColor, scaleHeight, twipsPerPixel, background.drawWidth);
    if (bitmap_ != nullptr && wanted == drawn_ && inside.cx == size_.cx && inside.cy == size_.cy)
        return false;
    if (bitmap_ != nullptr)
        DeleteObject(bitmap_);
    bitmap_ = nullptr;
    drawn_ = wanted;
    size_ = inside;
    if (inside.cx <= 0 || inside.cy <= 0)
        return true;
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    bitmap_ = CreateCompatibleBitmap(screen, inside.cx, inside.cy);
    ReleaseDC(nullptr, screen);
    HGDIOBJ old = SelectObject(dc, bitmap_);
    RECT all{0, 0, inside.cx, inside.cy};
    HBRUSH fill = CreateSolidBrush(colorOf(backColor));
    FillRect(dc, &all, fill);
    DeleteObject(fill);
    if (background.gradient) {
        // One horizontal line per step, each in its interpolated colour, as the form draws it.
        for (const auto& line :
             dialog::gradientLines(background.gradientStart, background.gradientEnd, scaleHeight, twipsPerPixel)) {
            HPEN pen = CreatePen(PS_SOLID, background.drawWidth, colorOf(line.color));
            HGDIOBJ oldPen = SelectObject(dc, pen);
            const int y = toPixels(line.y, twipsPerPixel);
            MoveToEx(dc, 0, y, nullptr);
            LineTo(dc, inside.cx, y);
            SelectObject(dc, oldPen);
            DeleteObject(pen);
        }
    }
    SelectObject(dc, old);
    DeleteDC(dc);
    return true;
}

void KeptBackground::paint(HDC dc, SIZE inside) const {
    if (bitmap_ == nullptr)
        return;
    HDC memory = CreateCompatibleDC(dc);
    HGDIOBJ old = SelectObject(memory, bitmap_);
    BitBlt(dc, 0, 0, inside.cx, inside.cy, memory, 0, 0, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
}

} // namespace pl::winui
