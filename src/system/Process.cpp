#include "system/Process.h"

#include "system/CommandLine.h"

#include <QByteArrayList>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <unistd.h>
#include <utility>
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

/// The attributes and file actions of one start. Without actions a child inherits all.
class SpawnSettings {
public:
    SpawnSettings() {
        posix_spawnattr_init(&Attributes);
        posix_spawn_file_actions_init(&Actions);
        sigset_t mask;
        sigemptyset(&mask);
        posix_spawnattr_setsigmask(&Attributes, &mask);
        posix_spawnattr_setsigdefault(&Attributes, &ResetSignals);
        posix_spawnattr_setflags(&Attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
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

bool Spawn(const QString& commandLine, const SpawnSettings& settings, Handle& process) {
    // No start can take it as it is.
    if (commandLine.contains(QChar::Null)) {
        return KeepError(EINVAL);
    }
    QByteArrayList arguments;
    std::vector<char*> pointers;
    for (const QString& item : SplitCommandLine(commandLine)) {
        arguments += item.toUtf8();
        pointers.push_back(arguments.last().data());
    }
    if (arguments.isEmpty()) {
        return KeepError(ENOENT);
    }
    pointers.push_back(nullptr);
    return KeepError(posix_spawnp(&process, pointers[0], &settings.Actions, &settings.Attributes,
                                  pointers.data(), environ));
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

bool CreatePipes(StandardStreams& streams, Handle& inputWrite, Handle& outputRead) {
    if (!CreatePipe(streams.Input, inputWrite)) {
        return false;
    }
    if (!CreatePipe(outputRead, streams.Output)) {
        CloseHandle(std::exchange(streams.Input, 0));
        CloseHandle(std::exchange(inputWrite, 0));
        return false;
    }
    streams.Error = streams.Output;
    return true;
}

bool CreateProcess(const QString& commandLine, const StandardStreams& streams, Handle& process) {
    SpawnSettings settings;
    posix_spawn_file_actions_adddup2(&settings.Actions, streams.Input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&settings.Actions, streams.Output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&settings.Actions, streams.Error, STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&settings.Actions, STDERR_FILENO + 1);
    return Spawn(commandLine, settings, process);
}

bool CreateProcess(const QString& commandLine, Handle& process) {
    SpawnSettings settings;
    posix_spawn_file_actions_adddup2(&settings.Actions, STDOUT_FILENO, STDERR_FILENO);
    return Spawn(commandLine, settings, process);
}

ReadOutcome ReadFile(Handle handle, char* buffer, int size, int& count) {
    pollfd pending = {handle, POLLIN, 0};
    if (poll(&pending, 1, 0) == 0) {
        return ReadOutcome::Nothing;
    }
    count = static_cast<int>(read(handle, buffer, static_cast<size_t>(size)));
    return count > 0 ? ReadOutcome::Data : ReadOutcome::End;
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
