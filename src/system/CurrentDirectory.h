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

/// The directory that @p path stands for: one that stands between quotes, as one item of a command
/// line does, is taken without them.
QString DirectoryOf(const QString& path);

/// Changes the current directory of the whole process to the one that @p path stands for, seen from
/// the present one.
DirectoryChange ChangeDirectory(const QString& path);

} // namespace rivenfall
