#include "support/Title.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

QString ProgramTitle() {
    return QString::fromUtf8("OMRA Rivenfall Compiler Controller " RIVENFALL_VERSION);
}

QString FileTitleOf(const QString& path) {
    return path.isEmpty() ? u"New File"_s : path.sliced(path.lastIndexOf(u'\\') + 1);
}

} // namespace rivenfall
