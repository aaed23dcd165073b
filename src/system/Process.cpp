#include "system/Process.h"

#include "system/CommandLine.h"

#include <QByteArrayList>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <spawn.h>
#include <unistd.h>
#include <vector>

namespace rivenfall {

namespace {

int LastErrorNumber = 0;

/// Keeps @p error for LastError if it is one. True for 0, which is none.
bool KeepError(int error) {
    if (error != 0) {
        LastErrorNumber = error;
    }
    return error == 0;
}

/// The signals that a child gets with their default action: all but those that were ignored when
/// the program started. Libraries ignore some of their own accord later.
sigset_t SignalsToReset() {
    sigset_t signals;
    // Unlike sigfillset, with the C library's own signals: a start leaves those ignored.
    std::memset(&signals, 0xFF, sizeof signals);
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action;
        // Whoever has the program ignore its children's ends can't mean that for theirs.
        if (signal != SIGCHLD && sigaction(signal, nullptr, &action) == 0 &&
            action.sa_handler == SIG_IGN) {
            sigdelset(&signals, signal);
        }
    }
    return signals;
}

/// Looked up before main, and so before anything else has touched them.
const sigset_t ResetSignals = SignalsToReset();

/// The attributes and file actions of one start.
class SpawnSettings {
public:
    SpawnSettings(const StandardStreams& streams, ChildGroup group) {
        posix_spawnattr_init(&Attributes);
        posix_spawn_file_actions_init(&Actions);

        sigset_t mask;
        sigemptyset(&mask);
        posix_spawnattr_setsigmask(&Attributes, &mask);
        posix_spawnattr_setsigdefault(&Attributes, &ResetSignals);
        const int grouping = group == ChildGroup::Own ? POSIX_SPAWN_SETPGROUP : 0;
        const int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | grouping;
        posix_spawnattr_setflags(&Attributes, static_cast<short>(flags));

        posix_spawn_file_actions_adddup2(&Actions, streams.Input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&Actions, streams.Output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&Actions, streams.Error, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&Actions, STDERR_FILENO + 1);
    }

    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&Actions);
        posix_spawnattr_destroy(&Attributes);
    }

    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawnattr_t Attributes;
    posix_spawn_file_actions_t Actions;
};

/// The items of @p commandLine as the bytes that the child gets; empty where no start can take
/// them as they are.
QByteArrayList ArgumentsOf(const QString& commandLine) {
    QByteArrayList arguments;
    for (const QString& item : SplitCommandLine(commandLine)) {
        arguments += item.toUtf8();
        if (arguments.last().contains('\0')) {
            return {};
        }
    }
    return arguments;
}

} // namespace

void ReapChildrenInKernel() {
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    action.sa_flags = SA_NOCLDWAIT;
    sigaction(SIGCHLD, &action, nullptr);
}

bool IgnoredAtStart(int signal) {
    return sigismember(&ResetSignals, signal) == 0;
}

bool CreatePipe(Handle& readEnd, Handle& writeEnd) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return KeepError(errno);
    }
    readEnd = ends[0];
    writeEnd = ends[1];
    return true;
}

Handle DuplicateHandle(Handle handle) {
    const int copy = fcntl(handle, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    KeepError(copy < 0 ? errno : 0);
    return copy < 0 ? 0 : copy;
}

bool CreateProcess(const QString& commandLine, const StandardStreams& streams, Handle& process,
                   ChildGroup group) try {
    const QByteArrayList arguments = ArgumentsOf(commandLine);
    if (arguments.isEmpty()) {
        return KeepError(commandLine.contains(QChar::Null) ? EINVAL : ENOENT);
    }
    std::vector<char*> pointers;
    for (const QByteArray& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.constData()));
    }
    pointers.push_back(nullptr);

    const SpawnSettings settings(streams, group);
    return KeepError(posix_spawnp(&process, pointers[0], &settings.Actions, &settings.Attributes,
                                  pointers.data(), environ));
} catch (const std::bad_alloc&) {
    return KeepError(ENOMEM);
}

ReadOutcome ReadFile(Handle handle, char* buffer, int size, int& count) {
    count = 0;
    pollfd pending = {handle, POLLIN, 0};
    const int ready = poll(&pending, 1, 0);
    if (ready == 0 || (ready < 0 && errno == EINTR)) {
        return ReadOutcome::Nothing;
    }
    const ssize_t result = read(handle, buffer, static_cast<size_t>(size));
    if (result > 0) {
        count = static_cast<int>(result);
        return ReadOutcome::Data;
    }
    if (result < 0 && errno == EINTR) {
        return ReadOutcome::Nothing;
    }
    KeepError(result < 0 ? errno : 0);
    return ReadOutcome::End;
}

void CloseHandle(Handle handle) {
    if (handle > 0) {
        close(handle);
    }
}

int LastError() {
    return LastErrorNumber;
}

} // namespace rivenfall
