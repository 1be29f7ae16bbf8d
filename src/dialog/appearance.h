#pragma once
// The job dialog's looks. The standard and the "vista" look paint a vertical gradient behind the
// controls; the grey look uses the system's button face instead. The gradient's lines are computed
// here, so a view only draws the lines it is given.

#include "forms/form_model.h"

#include <vector>

namespace pl::dialog {

// The system colour of button faces, as a colour value that names a system colour.
inline constexpr forms::Rgb SystemButtonFace = 0x8000000F;

inline constexpr forms::Rgb StandardGradientStart = 0xEDA985; // light blue
inline constexpr forms::Rgb StandardGradientEnd = 0xC65D21;   // blue
inline constexpr forms::Rgb VistaGradientStart = 0x000000;    // black
inline constexpr forms::Rgb VistaGradientEnd = 0x787878;      // grey
inline constexpr forms::Rgb GreyLinkText = 0xFF0000;          // lbConfig reads as a link: blue

// What the form draws on itself. Nothing is drawn until the load sequence asks for a gradient.
struct Background {
    bool keepsDrawing = false; // what is drawn survives repainting
    bool gradient = false;
    forms::Rgb gradientStart = 0;
    forms::Rgb gradientEnd = 0;
    int drawWidth = 1; // line width in pixels
};

struct GradientLine {
    int y;            // twips from the top of the drawing area
    forms::Rgb color; // 0x00BBGGRR
};

// The colour at height `y` of a gradient `scaleHeight` twips high: each of red, green and blue
// interpolated linearly from `start` at the top to `end` at the bottom.
forms::Rgb gradientColor(forms::Rgb start, forms::Rgb end, int y, int scaleHeight);

// The horizontal lines that paint the gradient over a drawing area `scaleHeight` twips high, one
// every `step` twips (one pixel: the view's twips per pixel) from the top to the bottom.
std::vector<GradientLine> gradientLines(forms::Rgb start, forms::Rgb end, int scaleHeight, int step);

} // namespace pl::dialog
