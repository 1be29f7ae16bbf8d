#include "dialog/appearance.h"

#include <cmath>

namespace pl::dialog {

namespace {

int red(forms::Rgb c) {
    return static_cast<int>(c % 256);
}
int green(forms::Rgb c) {
    return static_cast<int>(c / 256 % 256);
}
int blue(forms::Rgb c) {
    return static_cast<int>(c / 65536 % 256);
}

int between(int from, int to, int y, int height) {
    return static_cast<int>(std::lround(from + static_cast<double>(to - from) * y / height));
}

} // namespace

forms::Rgb gradientColor(forms::Rgb start, forms::Rgb end, int y, int scaleHeight) {
    if (scaleHeight <= 0 || y <= 0)
        return forms::rgb(red(start), green(start), blue(start));
    if (y >= scaleHeight)
        return forms::rgb(red(end), green(end), blue(end));
    return forms::rgb(between(red(start), red(end), y, scaleHeight), between(green(start), green(end), y, scaleHeight),
                      between(blue(start), blue(end), y, scaleHeight));
}

std::vector<GradientLine> gradientLines(forms::Rgb start, forms::Rgb end, int scaleHeight, int step) {
    std::vector<GradientLine> lines;
    if (step <= 0 || scaleHeight < 0)
        return lines;
    lines.reserve(static_cast<std::size_t>(scaleHeight / step + 1));
    for (int y = 0; y <= scaleHeight; y += step)
        lines.push_back({y, gradientColor(start, end, y, scaleHeight)});
    return lines;
}

} // namespace pl::dialog
