#pragma once

#include <QByteArray>
#include <QString>

namespace rivenfall {

/// The path @p bytes, as the kernel hands it over, as a text. Bytes that are no UTF-8 become
/// something that is no text either, so such a path never reads like that of another file.
QString PathText(const QByteArray& bytes);

/// The path @p path as the kernel takes it. Throws FileError where it can't be one, as above.
QByteArray PathBytes(const QString& path);

/// The path @p name as a full path, seen from the directory that is current now. A program asks for
/// it at its start, before a run changes that directory. Behind a link to a folder ".." is for the
/// kernel to resolve, so it stays.
QString FullPath(const QString& name);

} // namespace rivenfall
