#include "platform/CurrentDirectory.h"

#include "platform/CommandLine.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace rivenfall {

namespace {

QString WithoutQuotes(const QString& path) {
    const QStringList items = SplitCommandLine(path);
    return items.size() == 1 ? items.first() : path;
}

} // namespace

DirectoryChange ChangeDirectory(const QString& path) {
    if (chdir(QFile::encodeName(WithoutQuotes(path)).constData()) == 0) {
        return {};
    }
    const int number = errno;
    return {number, QString::fromLocal8Bit(std::strerror(number))};
}

} // namespace rivenfall
