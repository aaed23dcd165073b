#include "runner/Output.h"

#include "run/LogFrame.h"
#include "support/DeceptiveText.h"
#include "system/ErrorReason.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>
#include <utility>

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

QString EscapeOf(char32_t character) {
    constexpr QStringView escaped = u"\a\b\t\n\v\f\r";
    constexpr QStringView letters = u"abtnvfr";
    if (const qsizetype position = escaped.indexOf(QChar::fromUcs4(character)); position >= 0) {
        return u"\\"_s + letters[position];
    }
    const uint code = character;
    if (code < 0x100) {
        return u"\\x%1"_s.arg(code, 2, 16, QChar(u'0'));
    }
    return code < 0x10000 ? u"\\u%1"_s.arg(code, 4, 16, QChar(u'0'))
                          : u"\\U%1"_s.arg(code, 8, 16, QChar(u'0'));
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

void Output::WriteFrame(const QString& issue, const QString& result) {
    if (!pblnQuiet) {
        const QString shown = pblnTerminal ? VisibleText(issue) : issue;
        Write(LogFrame(shown, result, std::exchange(pblnFramed, true), u"\n"_s).toUtf8());
    }
}

void Tell(const QString& message) {
    WriteAll(STDERR_FILENO, "rivenfall-run: " + VisibleText(message).toUtf8() + '\n');
}

QString VisibleText(const QString& text) {
    return MarkDeceptive(text, EscapeOf);
}

} // namespace rivenfall
