#include "controls/Twips.h"

#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace rivenfall {

namespace {

/// Nine points at 96 dots per inch, which Qt takes where the system names no font.
constexpr double UsualFontPixels = 12;

double TwipsPerPixel() {
    const double fontPixels = QFontInfo(QGuiApplication::font()).pixelSize();
    return 15 / std::max(1.0, fontPixels / UsualFontPixels);
}

} // namespace

int PixelsFromTwips(int twips) {
    return static_cast<int>(std::lround(twips / TwipsPerPixel()));
}

int TwipsFromPixels(int pixels) {
    return static_cast<int>(std::lround(pixels * TwipsPerPixel()));
}

} // namespace rivenfall
