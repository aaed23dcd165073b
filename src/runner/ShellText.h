#pragma once

#include <QString>
#include <QStringList>

namespace rivenfall {

/// How a text is written that holds what could steer a terminal.
enum class ShellNotation {
    Posix,   ///< As it is, between quotes.
    Visible, ///< As $'…' with escapes, which bash, zsh, ksh and busybox read as the same text.
};

/// A line for a POSIX shell that starts the program @p items[0] with the arguments behind it, as a
/// run does: with exactly these texts, by a search along PATH alone. Its standard input is empty,
/// since the shell's own may hold these very lines.
QString ShellCommand(const QStringList& items, ShellNotation notation);

/// A line for a POSIX shell that changes to the directory @p path as a run does.
QString ShellDirectoryChange(const QString& path, ShellNotation notation);

} // namespace rivenfall
