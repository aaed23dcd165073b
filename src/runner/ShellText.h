#pragma once

#include "support/StringList.h"

namespace rivenfall {

/// How a text is written that holds what could steer a terminal.
enum class ShellNotation {
    Posix,   ///< As it is, between quotes.
    Visible, ///< As $'…' with escapes, which bash, zsh, ksh and busybox read as the same text.
};

/// A line for a POSIX shell that starts the first one of @p items with the others as arguments, as
/// a run does: with exactly these texts, by a search along PATH alone. Its standard input is empty,
/// since the shell's own may hold these very lines.
QString ShellCommand(const StringList& items, ShellNotation notation);

/// A line for a POSIX shell that changes to the directory @p path as a run does.
QString ShellDirectoryChange(const QString& path, ShellNotation notation);

} // namespace rivenfall
