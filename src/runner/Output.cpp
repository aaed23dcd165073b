#include "runner/Output.h"

#include "runner/Signals.h"
#include "runner/VisibleText.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <poll.h>
#include <unistd.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int PatienceMilliseconds = 1000;

bool TakesBytes(int milliseconds) {
    pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, milliseconds) > 0;
}

} // namespace

Output::Output(bool quiet) : pblnQuiet(quiet), pblnTerminal(isatty(STDOUT_FILENO) == 1) {}

void Output::Write(QByteArrayView bytes) {
    while (!bytes.isEmpty() && !pblnFailed) {
        WriteSome(bytes);
    }
}

/// Takes what one call has written off the front of @p bytes.
void Output::WriteSome(QByteArrayView& bytes) {
    qsizetype most = bytes.size();
    if (Interruption() != 0) {
        // A pipe that takes anything takes this much without waiting.
        most = std::min<qsizetype>(most, PIPE_BUF);
        pblnFailed = !TakesBytes(PatienceMilliseconds);
        if (pblnFailed) {
            return;
        }
    }
    const ssize_t written = write(STDOUT_FILENO, bytes.data(), static_cast<size_t>(most));
    if (written >= 0) {
        bytes = bytes.sliced(written);
    } else if (errno == EAGAIN) {
        // Somebody else has set it up not to wait. A signal may have come just now: look again.
        TakesBytes(PatienceMilliseconds);
    } else if (errno != EINTR) {
        pblnFailed = true;
        const int error = errno;
        // The signal of a closed pipe ends the program as it ends any filter, without a word.
        if (Interruption() == 0) {
            Tell(u"standard output can't be written: "_s + ReasonOf(error));
        }
    }
}

void Tell(const QString& message) {
    QByteArray line = "rivenfall-run: " + VisibleText(message).toUtf8() + '\n';
    while (!line.isEmpty()) {
        const ssize_t written =
            write(STDERR_FILENO, line.constData(), static_cast<size_t>(line.size()));
        if (written >= 0) {
            line.remove(0, written);
        } else if (errno == EAGAIN) {
            pollfd error = {STDERR_FILENO, POLLOUT, 0};
            poll(&error, 1, PatienceMilliseconds);
        } else if (errno != EINTR) {
            return;
        }
        if (Interruption() != 0 && !line.isEmpty()) {
            return;
        }
    }
}

QString ReasonOf(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace rivenfall
