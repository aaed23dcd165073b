#include "system/CurrentDirectory.h"

#include "system/ErrorReason.h"

#include <QFile>

#include <cerrno>
#include <unistd.h>

namespace rivenfall {

DirectoryChange ChangeDirectory(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    if (!name.contains('\0') && chdir(name.constData()) == 0) {
        return {};
    }
    const int number = name.contains('\0') ? EINVAL : errno;
    return {number, ReasonOf(number)};
}

} // namespace rivenfall
