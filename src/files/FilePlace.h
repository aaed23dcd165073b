#pragma once

#include "files/OpenFile.h"

namespace rivenfall {

/// Where a file stands, or is to stand, behind all links. What is done there reaches the same
/// folder whatever happens to its path meanwhile.
struct FilePlace {
    /// The folder, open as a place alone: there is nothing to read from it.
    OpenFile Folder;
    /// The name in it.
    QByteArray Name;
};

/// The place that @p path leads to. Throws FileError where there is no such folder.
FilePlace PlaceOf(const QByteArray& path);

} // namespace rivenfall
