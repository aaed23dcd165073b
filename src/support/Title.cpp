#include "support/Title.h"

namespace rivenfall {

QString ProgramTitle() {
    return QStringLiteral("OMRA Rivenfall Compiler Controller " RIVENFALL_VERSION);
}

QString FileTitleOf(const QString& path) {
    return path.isEmpty() ? QStringLiteral("New File") : path.sliced(path.lastIndexOf(u'\\') + 1);
}

} // namespace rivenfall
