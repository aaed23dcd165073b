#pragma once

#include <QByteArray>
#include <QString>

namespace rivenfall {

/// Makes @p bytes the content of the file @p path, whole or not at all, and comes back when they
/// are on the disk. A link stays, and so does what tells who may use the file. Throws FileError;
/// then the file has its former content, unless the reason says otherwise.
///
/// The bytes go to a new file of the same folder, which then takes the former one's place. They are
/// written over the former ones where the kernel doesn't allow that, where the new file couldn't
/// have the former one's owner, group, mode, access control list and attributes, and where the
/// former one has other hard links. A process that ends in the middle of that leaves the new file
/// in the folder, if one could be made. Otherwise the new file has no name until it is complete,
/// where the file system can do that.
void SaveFile(const QString& path, const QByteArray& bytes);

} // namespace rivenfall
