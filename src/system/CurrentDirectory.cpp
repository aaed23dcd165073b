#include "system/CurrentDirectory.h"

#include <QFile>

#include <cerrno>
#include <unistd.h>

namespace rivenfall {

int ChangeDirectory(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    if (name.contains('\0')) {
        return EINVAL;
    }
    return chdir(name.constData()) == 0 ? 0 : errno;
}

} // namespace rivenfall
