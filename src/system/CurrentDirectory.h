#pragma once

#include <QString>

namespace rivenfall {

/// How a change of the current directory went.
struct DirectoryChange {
    /// The operating system's error number, 0 for success.
    int Number = 0;
    /// The operating system's words for the error, in the user's language; empty for success.
    QString Description;
};

/// Changes the current directory of the whole process to @p path, seen from the present one.
DirectoryChange ChangeDirectory(const QString& path);

} // namespace rivenfall
