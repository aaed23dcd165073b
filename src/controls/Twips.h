#pragma once

namespace rivenfall {

/// The whole pixels that @p twips make. One is 15 at the usual size of the system's font; where
/// that is larger, layout and letters grow with it as far as the screen has room. Qt's own scaling
/// comes on top.
int PixelsFromTwips(int twips);

/// The whole twips that @p pixels make; PixelsFromTwips gives the same pixels for them.
int TwipsFromPixels(int pixels);

} // namespace rivenfall
