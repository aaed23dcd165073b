#include "runner/DocumentRun.h"

#include "run/LogFrame.h"
#include "runner/Child.h"
#include "runner/Output.h"
#include "runner/VisibleText.h"
#include "system/CurrentDirectory.h"
#include "system/ErrorReason.h"

#include <cstring>
#include <sys/wait.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The characters of a command line that the message of a failure has room for.
constexpr qsizetype ShownLength = 80;

/// In characters, which are three bytes each at most. The kernel takes 128 KiB in any case.
constexpr qsizetype CertainLength = 40'000;

QString NameOfSignal(int signal) {
    const char* name = sigabbrev_np(signal);
    return name ? u"SIG"_s + QString::fromLatin1(name) : u"signal %1"_s.arg(signal);
}

/// What is wrong with the end of a child, empty where nothing is.
QString FailureOf(int status) {
    if (WIFSIGNALED(status)) {
        return u"ended by "_s + NameOfSignal(WTERMSIG(status));
    }
    const int number = WEXITSTATUS(status);
    return number == 0 ? QString() : u"exit status %1"_s.arg(number);
}

QString Shortened(const QString& line) {
    if (line.size() <= ShownLength) {
        return line;
    }
    const qsizetype length = ShownLength - (line[ShownLength - 1].isHighSurrogate() ? 1 : 0);
    return line.first(length) + u" …"_s;
}

void WriteFrame(Output& output, const QString& issue, const QString& result, bool behindText) {
    if (output.IsQuiet()) {
        return;
    }
    QString frame = LogFrame(output.IsTerminal() ? VisibleText(issue) : issue, result, behindText);
    output.Write(frame.replace(u"\r\n"_s, u"\n"_s).toUtf8());
}

/// One run of a list of commands.
class DocumentRun {
public:
    DocumentRun(const std::vector<Command>& commands, Output& output)
        : Commands(commands), Sink(output) {}

    void CarryOutAll(BehindFailure behind) {
        for (const Command& command : Commands) {
            const QString failure =
                command.Directory ? CarryOutDirectoryChange(command) : CarryOutProgram(command);
            ++CarriedOut;
            if (!failure.isEmpty()) {
                TellFailure(command, failure);
            }
            if (behind == BehindFailure::Stop && (FailedCount > 0 || Sink.Failed())) {
                break;
            }
        }
        if (FailedCount > 0) {
            TellFailures();
        }
    }

    bool Failed() const { return FailedCount > 0; }

private:
    /// Gives what went wrong; empty for success.
    QString CarryOutProgram(const Command& command) {
        const QString line = command.Text();
        // The program writes on its own account, so the frame has to be there before. Where the
        // start is likely to fail, only the start can tell.
        const bool likely =
            line.size() <= CertainLength && LookForProgram(command.Items.Item(1)) == 0;
        if (likely) {
            AddFrame(line, ResultOfStart(0));
        }
        Child child;
        const int error = child.Start(line);
        if (error != 0 || !likely) {
            AddFrame(line, ResultOfStart(error));
        }
        return error == 0 ? FailureOf(child.Wait()) : u"can't be started: "_s + ReasonOf(error);
    }

    QString CarryOutDirectoryChange(const Command& command) {
        const DirectoryChange change = ChangeDirectory(*command.Directory);
        AddFrame(command.Text(), ResultOfChange(change));
        return change.Description;
    }

    void AddFrame(const QString& issue, const QString& result) {
        WriteFrame(Sink, issue, result, BehindText);
        BehindText = true;
    }

    void TellFailure(const Command& command, const QString& reason) {
        Tell(u"[%1/%2] "_s.arg(CarriedOut).arg(Commands.size()) +
             Shortened(command.Text().trimmed()) + u": "_s + reason);
        ++FailedCount;
    }

    void TellFailures() const {
        const auto count = static_cast<qsizetype>(Commands.size());
        QString summary = u"%1 of %2 command lines failed"_s.arg(FailedCount).arg(count);
        if (CarriedOut < count) {
            summary += u", %1 not carried out"_s.arg(count - CarriedOut);
        }
        Tell(summary);
    }

    const std::vector<Command>& Commands;
    Output& Sink;
    bool BehindText = false;
    int CarriedOut = 0;
    int FailedCount = 0;
};

} // namespace

bool CarryOut(const std::vector<Command>& commands, BehindFailure behind, Output& output) {
    DocumentRun run(commands, output);
    run.CarryOutAll(behind);
    return !run.Failed();
}

void ReportNothingToRun(Output& output) {
    WriteFrame(output, NothingToRunIssue.toString(), NothingToRunResult.toString(), false);
}

} // namespace rivenfall
