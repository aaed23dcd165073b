#pragma once

#include <QString>

namespace rivenfall {

struct Command;

/// How a text is written that holds what could steer a terminal.
enum class ShellNotation {
    Posix,   ///< As it is, between quotes.
    Visible, ///< As $'…' with escapes, which bash, zsh, ksh and busybox read as the same text.
};

/// A line for a POSIX shell that does what a run does for @p command: starts the program with
/// exactly these arguments, by a search along PATH alone, or changes the directory. A program's
/// standard input is empty, since the shell's own may hold these very lines.
QString ShellLine(const Command& command, ShellNotation notation);

} // namespace rivenfall
