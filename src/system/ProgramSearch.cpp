#include "system/ProgramSearch.h"

#include <QByteArrayList>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rivenfall {

namespace {

/// Where the C library looks when there is no PATH.
constexpr char DefaultPath[] = "/bin:/usr/bin";

int ErrorOfProgram(const QByteArray& path) {
    struct stat status;
    if (stat(path.constData(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode) || faccessat(AT_FDCWD, path.constData(), X_OK, AT_EACCESS) != 0) {
        return EACCES;
    }
    return 0;
}

} // namespace

int FindProgram(const QByteArray& name) {
    if (name.isEmpty()) {
        return ENOENT;
    }
    if (name.contains('/')) {
        return ErrorOfProgram(name);
    }
    const QByteArray path = qEnvironmentVariableIsSet("PATH") ? qgetenv("PATH") : DefaultPath;
    int result = ENOENT;
    for (const QByteArray& folder : path.split(':')) {
        // An empty entry is the current directory.
        const int error = ErrorOfProgram(folder.isEmpty() ? name : folder + '/' + name);
        if (error == 0) {
            return 0;
        }
        if (error == EACCES) {
            result = EACCES;
        }
    }
    return result;
}

} // namespace rivenfall
