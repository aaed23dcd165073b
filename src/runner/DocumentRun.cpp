#include "runner/DocumentRun.h"

#include "run/CommandAssembly.h"
#include "run/LogFrame.h"
#include "system/CurrentDirectory.h"
#include "system/Process.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace rivenfall {

namespace {

/// As much as a pipe of the kernel's holds.
constexpr size_t BufferSize = 1 << 16;

void WriteToStandardOutput(const char* bytes, size_t size) {
    while (size > 0) {
        const ssize_t written = write(STDOUT_FILENO, bytes, size);
        if (written < 0 && errno != EINTR) {
            return;
        }
        bytes += std::max<ssize_t>(written, 0);
        size -= static_cast<size_t>(std::max<ssize_t>(written, 0));
    }
}

void WriteFrame(const QString& issue, const QString& result, bool behindText) {
    QString frame = LogFrame(issue, result, behindText);
    frame.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    const QByteArray bytes = frame.toUtf8();
    WriteToStandardOutput(bytes.constData(), static_cast<size_t>(bytes.size()));
}

/// Copies what a child writes until the last holder of the other end has closed it.
void CopyOutput(Handle output) {
    std::array<char, BufferSize> buffer;
    for (;;) {
        const ssize_t count = read(output, buffer.data(), buffer.size());
        if (count > 0) {
            WriteToStandardOutput(buffer.data(), static_cast<size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return;
        }
    }
}

/// The pipes of one child: its silent input, whose write end stays here, and its output.
class ChildPipes {
public:
    ChildPipes()
        : pblnOpen(CreatePipe(Streams.Input, InputWrite) && CreatePipe(Output, Streams.Output)) {
        Streams.Error = Streams.Output;
    }

    ~ChildPipes() {
        CloseChildEnds();
        CloseHandle(InputWrite);
        CloseHandle(Output);
    }

    ChildPipes(const ChildPipes&) = delete;
    ChildPipes& operator=(const ChildPipes&) = delete;

    bool Open() const { return pblnOpen; }

    void CloseChildEnds() {
        CloseHandle(std::exchange(Streams.Input, 0));
        CloseHandle(std::exchange(Streams.Output, 0));
    }

    StandardStreams Streams;
    Handle InputWrite = 0;
    Handle Output = 0;

private:
    bool pblnOpen;
};

void CarryOutCommand(const QString& commandLine, bool behindText) {
    ChildPipes pipes;
    Handle process = 0;
    const bool started = pipes.Open() && CreateProcess(commandLine, pipes.Streams, process);
    WriteFrame(commandLine, ResultOfStart(started, LastError()), behindText);
    pipes.CloseChildEnds();
    if (started) {
        CopyOutput(pipes.Output);
    }
}

void CarryOutDirectoryChange(const StringList& items, bool behindText) {
    const QString path = PathOfDirectoryChange(items);
    WriteFrame(QStringLiteral("cd ") + path, ResultOfChange(ChangeDirectory(path)), behindText);
}

} // namespace

void CarryOut(const std::vector<StringList>& commands) {
    bool behindText = false;
    for (const StringList& items : commands) {
        if (IsDirectoryChange(items)) {
            CarryOutDirectoryChange(items, behindText);
        } else {
            CarryOutCommand(items.Text(), behindText);
        }
        behindText = true;
    }
}

void ReportNothingToRun() {
    WriteFrame(NothingToRunIssue.toString(), NothingToRunResult.toString(), false);
}

} // namespace rivenfall
