#pragma once

#include <QString>

namespace rivenfall {

/// How many code units of a text a row shows at most, which is more than fits on a screen. With
/// whole values of 1 MB in view a rebuild of the tree took 500 times as long.
constexpr qsizetype LongestRow = 1000;

/// What a row shows of @p text, the text of its node. TreeRowDelegate asks for every row that it
/// measures or paints.
///
/// Nothing in the text may make the row look like another one. A character that shows nothing or
/// moves its neighbours is shown by its number, as editors do: [U+202E], or [U+0009] for a tab.
///
/// A text that is longer than LongestRow is cut and ends in "…". The whole of it is in the value
/// box.
QString RowText(const QString& text);

} // namespace rivenfall
