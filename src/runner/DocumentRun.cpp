#include "runner/DocumentRun.h"

#include "run/LogFrame.h"
#include "runner/Child.h"
#include "runner/Options.h"
#include "runner/Output.h"
#include "system/CurrentDirectory.h"
#include "system/ErrorReason.h"

#include <cstring>
#include <sys/wait.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The characters of a command line that the message of a failure has room for.
constexpr qsizetype ShownLength = 80;

/// In bytes. The kernel takes no longer item (execve(2)).
constexpr qsizetype LongestItem = 131'071;

QString Shortened(const QString& line) {
    if (line.size() <= ShownLength) {
        return line;
    }
    const qsizetype length = ShownLength - (line[ShownLength - 1].isHighSurrogate() ? 1 : 0);
    return line.first(length) + u" …"_s;
}

/// What is wrong with the end of a child, empty where nothing is.
QString FailureOf(int status) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        const char* name = sigabbrev_np(signal);
        return name ? u"ended by SIG"_s + QLatin1StringView(name)
                    : u"ended by signal %1"_s.arg(signal);
    }
    const int number = WEXITSTATUS(status);
    return number == 0 ? QString() : u"exit status %1"_s.arg(number);
}

QString CarryOutDirectoryChange(const Command& command, Output& output) {
    const int error = ChangeDirectory(*command.Directory);
    output.WriteFrame(command.Text(), ResultOfChange(error));
    return error == 0 ? QString() : ReasonOf(error);
}

bool IsLikelyToStart(const StringList& items) {
    for (int index = 1; index <= items.Count(); ++index) {
        if (items.Item(index).toUtf8().size() > LongestItem) {
            return false;
        }
    }
    return LookForProgram(items.Item(1)) == 0;
}

QString CarryOutProgram(const Command& command, Output& output) {
    const QString line = command.Text();
    // The program writes on its own account, so the frame has to be there before. Where the start
    // is likely to fail, only the start can tell.
    const bool likely = IsLikelyToStart(command.Items);
    if (likely) {
        output.WriteFrame(line, ResultOfStart(true, 0));
    }
    Child child;
    const int error = child.Start(line);
    if (error != 0 || !likely) {
        output.WriteFrame(line, ResultOfStart(error == 0, error));
    }
    return error == 0 ? FailureOf(child.Wait()) : u"can't be started: "_s + ReasonOf(error);
}

} // namespace

bool CarryOut(const std::vector<Command>& commands, const Options& options, Output& output) {
    const size_t count = commands.size();
    size_t carriedOut = 0;
    size_t failed = 0;
    while (carriedOut < count) {
        const Command& command = commands[carriedOut++];
        const QString failure = command.Directory ? CarryOutDirectoryChange(command, output)
                                                  : CarryOutProgram(command, output);
        if (!failure.isEmpty()) {
            ++failed;
            Tell(u"[%1/%2] "_s.arg(carriedOut).arg(count) + Shortened(command.Text().trimmed()) +
                 u": "_s + failure);
        }
        if (options.Has(Option::StopOnError) && (failed > 0 || output.Failed())) {
            break;
        }
    }
    if (failed > 0) {
        const QString rest = u", %1 not carried out"_s.arg(count - carriedOut);
        Tell(u"%1 of %2 command lines failed"_s.arg(failed).arg(count) +
             (carriedOut < count ? rest : QString()));
    }
    return failed == 0 || options.Has(Option::IgnoreErrors);
}

} // namespace rivenfall
