#include "runner/DocumentRun.h"

#include "run/CommandAssembly.h"
#include "run/LogFrame.h"
#include "runner/Child.h"
#include "runner/Output.h"
#include "runner/Signals.h"
#include "runner/VisibleText.h"
#include "system/CurrentDirectory.h"

#include <cerrno>
#include <cstring>
#include <sys/wait.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

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
    explicit DocumentRun(Output& output) : pobjOutput(output) {}

    void CarryOutNext(const StringList& items) {
        if (IsDirectoryChange(items)) {
            CarryOutDirectoryChange(PathOfDirectoryChange(items));
        } else {
            CarryOutCommand(items.Text());
        }
        ++plngCarriedOut;
    }

    bool Failed() const { return plngFailed > 0 || pobjOutput.Failed(); }

    void TellFailuresOf(qsizetype commandCount) const {
        if (plngFailed == 0) {
            return;
        }
        QString summary = u"%1 of %2 command lines failed"_s.arg(plngFailed).arg(commandCount);
        if (plngCarriedOut < commandCount) {
            summary += u", %1 not carried out"_s.arg(commandCount - plngCarriedOut);
        }
        Tell(summary);
    }

private:
    void CarryOutCommand(const QString& commandLine) {
        Child child;
        const int error = child.Start(commandLine);
        if (Interruption() != 0 && error != 0) {
            return;
        }
        WriteFrame(pobjOutput, commandLine, ResultOfStart(error == 0, error), plngCarriedOut > 0);
        if (error != 0) {
            TellFailure(commandLine, u"can't be started: "_s + ReasonOf(error));
            return;
        }
        const QString failure = FailureOf(child.Follow(pobjOutput));
        if (!failure.isEmpty() && Interruption() == 0) {
            TellFailure(commandLine, failure);
        }
    }

    void CarryOutDirectoryChange(const QString& path) {
        const QString line = u"cd "_s + path;
        const DirectoryChange change = ChangeDirectory(path);
        WriteFrame(pobjOutput, line, ResultOfChange(change), plngCarriedOut > 0);
        if (change.Number != 0) {
            TellFailure(line, change.Description);
        }
    }

    void TellFailure(const QString& line, const QString& reason) {
        Tell(line + u": "_s + reason);
        ++plngFailed;
    }

    Output& pobjOutput;
    int plngCarriedOut = 0;
    int plngFailed = 0;
};

} // namespace

bool CarryOut(const std::vector<StringList>& commands, BehindFailure behind, Output& output) {
    if (!RelaySignals()) {
        Tell(ReasonOf(errno));
        return false;
    }
    DocumentRun run(output);
    for (const StringList& items : commands) {
        run.CarryOutNext(items);
        if (Interruption() != 0) {
            EndBySignal(Interruption());
        }
        if (run.Failed() && behind == BehindFailure::Stop) {
            break;
        }
    }
    run.TellFailuresOf(static_cast<qsizetype>(commands.size()));
    if (Interruption() != 0) {
        EndBySignal(Interruption());
    }
    return !run.Failed();
}

void ReportNothingToRun(Output& output) {
    WriteFrame(output, NothingToRunIssue.toString(), NothingToRunResult.toString(), false);
}

} // namespace rivenfall
