#include "runner/Output.h"

#include "runner/VisibleText.h"
#include "system/ErrorReason.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// Writes all of @p bytes, however long their reader takes. Gives 0, or the error number.
int WriteAll(int descriptor, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written = write(descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written >= 0) {
            bytes = bytes.sliced(written);
        } else if (errno == EAGAIN) {
            // Somebody who has it too has set it up not to wait.
            pollfd room = {descriptor, POLLOUT, 0};
            poll(&room, 1, -1);
        } else {
            return errno;
        }
    }
    return 0;
}

} // namespace

Output::Output(bool quiet) : pblnQuiet(quiet), pblnTerminal(isatty(STDOUT_FILENO) == 1) {}

void Output::Write(QByteArrayView bytes) {
    const int error = pblnFailed ? 0 : WriteAll(STDOUT_FILENO, bytes);
    if (error != 0) {
        pblnFailed = true;
        Tell(u"standard output can't be written: "_s + ReasonOf(error));
    }
}

void Tell(const QString& message) {
    WriteAll(STDERR_FILENO, "rivenfall-run: " + VisibleText(message).toUtf8() + '\n');
}

} // namespace rivenfall
