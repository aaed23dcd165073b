#pragma once

#include <QString>

namespace rivenfall {

/// Changes the current directory of the whole process to @p path, seen from the present one. Gives
/// 0, or the error number.
int ChangeDirectory(const QString& path);

} // namespace rivenfall
