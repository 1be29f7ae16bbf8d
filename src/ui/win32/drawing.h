#pragma once
// Units, colours, fonts and the form background on Win32: twips at the screen's DPI, the classic
// colour values (system colours included), fonts made once per look, and the background that a
// form keeps drawn (the gradient is painted line by line into a bitmap that every repaint copies).

#include "dialog/appearance.h"
#include "forms/form_model.h"

#include "ui/win32/win32_api.h"

#include <map>
#include <tuple>

namespace pl::winui {

inline constexpr int TwipsPerInch = 1440;

// 15 at 96 DPI, 12 at 120 DPI.
int twipsPerPixelAt(int dpi);
// The DPI of the monitor a window is on (the system's when it has none yet).
int dpiOf(HWND hwnd);
int toPixels(int twips, int twipsPerPixel);

// The classic colour value as a COLORREF; values with the high bit name a system colour.
COLORREF colorOf(forms::Rgb value);

class FontCache {
public:
    FontCache() = default;
    ~FontCache();
    FontCache(const FontCache&) = delete;
    FontCache& operator=(const FontCache&) = delete;

    HFONT font(const forms::Control& control, int dpi);

private:
    std::map<std::tuple<std::string, int, bool, bool, int>, HFONT> fonts_;
};

// What a form has drawn on itself, kept in a bitmap of its inside's size.
class KeptBackground {
public:
    KeptBackground() = default;
    ~KeptBackground();
    KeptBackground(const KeptBackground&) = delete;
    KeptBackground& operator=(const KeptBackground&) = delete;

    // Draws the background again when what it shows or the size changed; true when it did.
    bool update(const dialog::Background& background, forms::Rgb backColor, SIZE inside, int scaleHeight,
                int twipsPerPixel);
    void paint(HDC dc, SIZE inside) const;

private:
    HBITMAP bitmap_ = nullptr;
    SIZE size_{};
    std::tuple<bool, forms::Rgb, forms::Rgb, forms::Rgb, int, int, int> drawn_{};
};

} // namespace pl::winui
