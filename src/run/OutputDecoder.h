#pragma once

#include <QByteArray>
#include <QString>

namespace rivenfall {

/// The length of the part of a UTF-8 character (RFC 3629) that @p bytes end with, 0 if they end
/// with a whole one or with what can't become one. So much waits for the next bytes of a child.
qsizetype UnfinishedLength(const QByteArray& bytes);

/// The output @p bytes of a child as text. Bytes that are no UTF-8 become U+FFFD.
QString DecodedOutput(QByteArrayView bytes);

} // namespace rivenfall
