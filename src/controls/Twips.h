#pragma once

namespace rivenfall {

/// Twips in one pixel at 96 dots per inch. Qt's own scaling comes on top.
inline constexpr int TwipsPerPixel = 15;

/// The whole pixels that @p twips make.
constexpr int PixelsFromTwips(int twips) {
    return twips / TwipsPerPixel;
}

/// The twips that @p pixels make.
constexpr int TwipsFromPixels(int pixels) {
    return pixels * TwipsPerPixel;
}

} // namespace rivenfall
