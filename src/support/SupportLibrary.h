#pragma once

#include "support/StringList.h"

#include <QString>

#include <array>
#include <vector>

namespace rivenfall {

/// Services that stand by themselves and keep no state. ShowAbout is the desktop's alone, in
/// AboutBox.cpp.
class SupportLibrary {
public:
    /// A new list, ready to take a command line through SetText.
    static StringList CommandLineList();

    /// True while @p Array has no allocation.
    static bool IsArrayEmpty(const std::vector<bool>& Array);

    /// Shows a box about the program until the user closes it: @p Title, the icon from the
    /// resource folder @p Icon, @p Lines with the empty ones as gaps, and @p Notice as small print
    /// where it isn't empty.
    static void ShowAbout(const QString& Title, const QString& Icon, const QString& Notice,
                          const std::array<QString, 3>& Lines);
};

} // namespace rivenfall
