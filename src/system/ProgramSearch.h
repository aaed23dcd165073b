#pragma once

#include <QByteArray>

namespace rivenfall {

/// Looks for the program @p name as a start by CreateProcess would, from the current directory, and
/// starts nothing. Gives 0 where there is one, or the error number that the start would fail with:
/// ENOENT for no such program, EACCES for one that may not be executed.
int FindProgram(const QByteArray& name);

} // namespace rivenfall
