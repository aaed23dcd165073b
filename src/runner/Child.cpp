#include "runner/Child.h"

#include "runner/Output.h"
#include "runner/Signals.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace rivenfall {

namespace {

/// As much as a pipe of the kernel's holds.
constexpr size_t BufferSize = 1 << 16;

} // namespace

Child::Child() = default;

Child::~Child() {
    CloseChildEnds();
    CloseHandle(phndInputWrite);
    CloseHandle(phndOutput);
}

int Child::Start(const QString& commandLine) {
    if (!CreatePipe(pobjStreams.Input, phndInputWrite) ||
        !CreatePipe(phndOutput, pobjStreams.Output)) {
        return LastError();
    }
    pobjStreams.Error = pobjStreams.Output;
    // A signal that comes from here on finds the child, or stops it from being started.
    const HeldSignals held;
    if (Interruption() != 0) {
        return EINTR;
    }
    pblnRunning = CreateProcess(commandLine, pobjStreams, phndProcess, ChildGroup::Own);
    CloseChildEnds();
    pblnOutputOpen = pblnRunning;
    if (!pblnRunning) {
        return LastError();
    }
    RelayTo(phndProcess);
    return 0;
}

int Child::Follow(Output& output) {
    while (pblnRunning || (pblnOutputOpen && Interruption() == 0)) {
        std::array<pollfd, 2> sources = {
            {{pblnOutputOpen ? phndOutput : -1, POLLIN, 0}, {NewsDescriptor(), POLLIN, 0}}};
        if (poll(sources.data(), sources.size(), -1) < 0) {
            continue;
        }
        if (sources[1].revents != 0) {
            TakeNews();
            LookAtProcess();
        }
        if (sources[0].revents != 0) {
            CopyOutput(output);
        }
    }
    pollfd rest = {phndOutput, POLLIN, 0};
    if (pblnOutputOpen && poll(&rest, 1, 0) > 0) {
        CopyOutput(output);
    }
    return Reap();
}

void Child::CloseChildEnds() {
    CloseHandle(std::exchange(pobjStreams.Input, 0));
    CloseHandle(std::exchange(pobjStreams.Output, 0));
}

/// Copies as much as there is at once.
void Child::CopyOutput(Output& output) {
    std::array<char, BufferSize> buffer;
    const ssize_t count = read(phndOutput, buffer.data(), buffer.size());
    if (count > 0) {
        output.Write(QByteArrayView(buffer.data(), count));
    } else if (count == 0 || errno != EINTR) {
        pblnOutputOpen = false;
    }
}

/// Notes the end of the child without reaping it: till then nobody else gets its number, which is
/// its group's too.
void Child::LookAtProcess() {
    siginfo_t news = {};
    const auto id = static_cast<id_t>(phndProcess);
    if (waitid(P_PID, id, &news, WEXITED | WNOHANG | WNOWAIT) == 0 && news.si_pid != 0) {
        pblnRunning = false;
        if (pobjTerminal.IsLent()) {
            TakeTerminalBack(news);
        }
        return;
    }
    news = {};
    if (waitid(P_PID, id, &news, WSTOPPED | WNOHANG) == 0 && news.si_pid != 0) {
        OnStop(news.si_status);
    }
}

void Child::OnStop(int signal) {
    if (signal == SIGTTIN || signal == SIGTTOU) {
        if (pobjTerminal.LendTo(phndProcess)) {
            kill(-phndProcess, SIGCONT);
        } else {
            // As any job in the background that needs the terminal: whoever brings this program
            // to the foreground has the child go on, too.
            StopBy(signal);
        }
    } else if (pobjTerminal.IsLent()) {
        // The terminal's key reached the child alone.
        pobjTerminal.TakeBack();
        StopBy(signal);
        kill(-phndProcess, SIGCONT);
    }
}

/// Behind the end of a child that had the terminal, which @p end tells.
void Child::TakeTerminalBack(const siginfo_t& end) {
    pobjTerminal.TakeBack();
    // A pager behind this program may have been stopped meanwhile.
    kill(0, SIGCONT);
    // The terminal's key reached the child alone, but meant the whole run.
    if (end.si_code != CLD_EXITED && (end.si_status == SIGINT || end.si_status == SIGQUIT)) {
        Interrupt(end.si_status);
    }
}

int Child::Reap() {
    const HeldSignals held;
    if (Interruption() != 0) {
        kill(-phndProcess, SIGTERM);
    }
    int status = 0;
    while (waitpid(phndProcess, &status, 0) < 0 && errno == EINTR) {
    }
    RelayTo(0);
    return status;
}

} // namespace rivenfall
