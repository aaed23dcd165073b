#pragma once

#include <QString>

namespace rivenfall {

/// @p text where a mark, which @p markOf makes, stands in the place of each character that shows
/// nothing, moves its neighbours or steers a terminal: control characters, separators of lines and
/// paragraphs, marks of writing direction, and what is invisible by itself. Joiners and selectors
/// stay where a script or an emoji is written with them.
QString MarkDeceptive(const QString& text, QString (*markOf)(char32_t character));

} // namespace rivenfall
