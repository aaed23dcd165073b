#pragma once

#include <QString>

namespace rivenfall {

/// @p text on one line and without a character that could steer a terminal or deceive its reader:
/// those that MarkDeceptive names stand in the notation of C. Everything else, a backslash
/// included, stands as it is.
QString VisibleText(const QString& text);

} // namespace rivenfall
