#pragma once

#include <QString>

namespace rivenfall {

/// The path @p name as a full path, seen from the directory that is current now. A program asks for
/// it at its start, before a run changes that directory.
QString FullPath(const QString& name);

} // namespace rivenfall
