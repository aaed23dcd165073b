#include "runner/Child.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <sys/wait.h>

namespace rivenfall {

namespace {

/// The bytes of a script's first line that the kernel reads (execve(2)).
constexpr qint64 MostOfAnInterpreter = 256;

} // namespace

Child::Child() {
    // Whoever has this program not hear of its children's ends can't mean those that it waits for.
    std::signal(SIGCHLD, SIG_DFL);
    sigemptyset(&pobjAwaited);
    sigaddset(&pobjAwaited, SIGCHLD);
    for (const int signal : {SIGINT, SIGQUIT, SIGHUP, SIGTERM}) {
        if (!IgnoredAtStart(signal)) {
            sigaddset(&pobjAwaited, signal);
        }
    }
    sigprocmask(SIG_BLOCK, &pobjAwaited, &pobjFormer);
}

Child::~Child() {
    sigprocmask(SIG_SETMASK, &pobjFormer, nullptr);
}

int Child::Start(const QString& commandLine) {
    return CreateProcess(commandLine, phndProcess) ? 0 : LastError();
}

int Child::Wait() {
    int ending = 0;
    int status = 0;
    while (waitpid(phndProcess, &status, WNOHANG) == 0) {
        siginfo_t news;
        const int signal = sigwaitinfo(&pobjAwaited, &news);
        if (signal <= 0 || signal == SIGCHLD) {
            continue;
        }
        ending = ending == 0 ? signal : ending;
        // The terminal's keys reach the child too. A terminal that goes away tells the first of its
        // programs alone.
        if (news.si_code <= 0 || signal == SIGHUP) {
            kill(phndProcess, signal);
        }
    }
    if (ending != 0) {
        raise(ending);
        sigprocmask(SIG_UNBLOCK, &pobjAwaited, nullptr);
    }
    return status;
}

int LookForProgram(const QString& name) {
    const QFileInfo file(name.contains(u'/') ? name : QStandardPaths::findExecutable(name));
    if (!file.exists()) {
        return ENOENT;
    }
    if (!file.isFile() || !file.isExecutable()) {
        return EACCES;
    }
    QFile program(file.filePath());
    // One that may be executed and not read is no script.
    if (!program.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return 0;
    }
    const QByteArray head = program.read(MostOfAnInterpreter).split('\n').constFirst();
    if (head.startsWith("#!")) {
        const QFileInfo interpreter(QFile::decodeName(head.sliced(2))
                                        .replace(u'\t', u' ')
                                        .section(u' ', 0, 0, QString::SectionSkipEmpty));
        return interpreter.isFile() && interpreter.isExecutable() ? 0 : ENOENT;
    }
    return head.startsWith("\177ELF") ? 0 : ENOEXEC;
}

} // namespace rivenfall
