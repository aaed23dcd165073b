#pragma once

#include <QString>

namespace rivenfall {

/// The program's name and version, as captions, message boxes and dialogs show it.
QString ProgramTitle();

/// What follows the last backslash of @p path, or all of it without one; "New File" for an empty
/// path.
QString FileTitleOf(const QString& path);

} // namespace rivenfall
