#pragma once

#include <QString>

namespace rivenfall {

/// @p text on one line and without a character that could steer a terminal or turn the order of
/// what it shows around: control characters, the separators of lines and paragraphs, and the marks
/// of writing direction stand in the notation of C. Everything else, a backslash included, stands
/// as it is.
QString VisibleText(const QString& text);

} // namespace rivenfall
