#pragma once

#include <QByteArray>

namespace rivenfall {

struct DocumentContent;

/// The document @p content as text for people and for comparisons: both trees, a line an entry with
/// its check mark, indented by level. An entry's text stands behind exactly one blank, in the
/// notation of C where it holds a backslash or a character that could steer a terminal, so two
/// documents that differ in an entry differ in its line.
QByteArray DocumentText(const DocumentContent& content);

/// What can be chosen in @p content, as text for people: a line a variable with its values, the one
/// in force behind "=", then the compilers with their check marks. Escaped as above.
QByteArray DocumentList(const DocumentContent& content);

} // namespace rivenfall
