#pragma once
// Forms are laid out in twips, 1440 to the inch. A screen's twips per pixel follow from its logical
// resolution: 15 at 96 dots per inch, 12 at 120 ("large fonts"). The models were designed at 15.

class QScreen;

namespace pl::qtui {

inline constexpr int TwipsPerInch = 1440;
inline constexpr int NormalTwipsPerPixel = 15;

// Twips per pixel at a logical resolution of `dotsPerInch`; never less than 1.
int twipsPerPixelAt(double dotsPerInch);
// Twips per pixel of `screen`, or of the primary screen; 15 when there is no screen at all.
int twipsPerPixel(const QScreen* screen = nullptr);

// Twips to pixels, rounded to the nearest pixel, and back.
int toPixels(int twips, int twipsPerPixel);
int toTwips(int pixels, int twipsPerPixel);

} // namespace pl::qtui
