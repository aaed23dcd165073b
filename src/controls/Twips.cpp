#include "controls/Twips.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace rivenfall {

namespace {

/// Nine points at 96 dots per inch, which Qt takes where the system names no font.
constexpr double UsualFontPixels = 12;

/// The largest of the fixed windows, in pixels at the usual size of letters.
constexpr QSizeF LargestWindow(577, 353);

/// How many letters high its menu bar and its title bar are together.
constexpr double LettersOfBars = 5;

double TwipsPerPixel() {
    const double fontPixels = QFontInfo(QGuiApplication::font()).pixelSize();
    const QSizeF free = QGuiApplication::primaryScreen()->availableSize();
    return 15 /
           std::max(
               1.0,
               std::min({fontPixels / UsualFontPixels, free.width() / LargestWindow.width(),
                         (free.height() - LettersOfBars * fontPixels) / LargestWindow.height()}));
}

} // namespace

int PixelsFromTwips(int twips) {
    return static_cast<int>(std::lround(twips / TwipsPerPixel()));
}

int TwipsFromPixels(int pixels) {
    return static_cast<int>(std::lround(pixels * TwipsPerPixel()));
}

} // namespace rivenfall
