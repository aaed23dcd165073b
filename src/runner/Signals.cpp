#include "runner/Signals.h"

#include "system/Process.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

// A child has a process group of its own. A signal for this program alone, as from kill, timeout or
// a CI server, then reaches everything that the child has started, and nothing else: the group that
// the program itself is in may hold the script that called it. The price is that the terminal's
// keys reach this program only; it passes them on, and lends the terminal to a child that reads it.

namespace rivenfall {

namespace {

volatile sig_atomic_t Group = 0;
volatile sig_atomic_t FirstSignal = 0;
std::array<int, 2> News = {-1, -1};

void SendToGroup(int signal) {
    if (Group > 0) {
        kill(-Group, signal);
    }
}

void OnInterruption(int signal) {
    const int error = errno;
    Interrupt(signal);
    // A child that ignores the end of a pipe, or doesn't write, has to go as well.
    SendToGroup(signal == SIGPIPE ? SIGTERM : signal);
    // One that was stopped hears of it only when it goes on.
    SendToGroup(SIGCONT);
    errno = error;
}

void OnStop(int signal) {
    const int error = errno;
    SendToGroup(signal);
    StopBy(signal);
    // The signal that has this program go on does the same for the child, but where nobody could
    // send it the kernel hasn't stopped this program at all.
    SendToGroup(SIGCONT);
    errno = error;
}

void OnContinuation(int signal) {
    const int error = errno;
    SendToGroup(signal);
    errno = error;
}

void OnChild(int) {
    const int error = errno;
    // A full pipe holds news enough.
    [[maybe_unused]] const ssize_t written = write(News[1], "", 1);
    errno = error;
}

/// Has @p handle called for @p signal. Without SA_RESTART, so that a write that waits comes back.
void Catch(int signal, void (*handle)(int)) {
    struct sigaction action = {};
    action.sa_handler = handle;
    sigaction(signal, &action, nullptr);
}

void CatchUnlessIgnored(int signal, void (*handle)(int)) {
    if (!IgnoredAtStart(signal)) {
        Catch(signal, handle);
    }
}

} // namespace

bool RelaySignals() {
    if (pipe2(News.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return false;
    }
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE}) {
        CatchUnlessIgnored(signal, OnInterruption);
    }
    CatchUnlessIgnored(SIGTSTP, OnStop);
    Catch(SIGCONT, OnContinuation);
    Catch(SIGCHLD, OnChild);
    // Without it nobody would hear of a child's end; some programs start others like this.
    sigset_t child;
    sigemptyset(&child);
    sigaddset(&child, SIGCHLD);
    sigprocmask(SIG_UNBLOCK, &child, nullptr);
    return true;
}

void RelayTo(int group) {
    Group = group;
}

int Interruption() {
    return FirstSignal;
}

void Interrupt(int signal) {
    if (FirstSignal == 0) {
        FirstSignal = signal;
    }
}

int NewsDescriptor() {
    return News[0];
}

void TakeNews() {
    std::array<char, 64> buffer;
    while (read(News[0], buffer.data(), buffer.size()) > 0) {
    }
}

void StopBy(int signal) {
    struct sigaction former;
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, &former);
    sigset_t one;
    sigset_t mask;
    sigemptyset(&one);
    sigaddset(&one, signal);
    raise(signal);
    sigprocmask(SIG_UNBLOCK, &one, &mask);
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    sigaction(signal, &former, nullptr);
}

void EndBySignal(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    raise(signal);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // Not reached: the default action of each of these signals ends the program.
    _exit(EXIT_FAILURE);
}

} // namespace rivenfall
