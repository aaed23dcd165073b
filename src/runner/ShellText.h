#pragma once

#include <QString>
#include <QStringList>

namespace rivenfall {

/// A line for a POSIX shell that starts the program @p items[0] with the arguments behind it, as a
/// run does: with exactly these texts, by a search along PATH alone, and without a standard input
/// that would be the shell's own.
QString ShellCommand(const QStringList& items);

/// A line for a POSIX shell that changes to the directory @p path as a run does.
QString ShellDirectoryChange(const QString& path);

} // namespace rivenfall
