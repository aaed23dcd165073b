#include "system/FilePath.h"

#include <QFileInfo>

namespace rivenfall {

QString FullPath(const QString& name) {
    return QFileInfo(name).absoluteFilePath();
}

} // namespace rivenfall
