#pragma once

#include <csignal>

namespace rivenfall {

/// From here on INT, TERM, HUP, QUIT and PIPE don't end the program at once: they are passed on to
/// the process group of the child at work, a PIPE as TERM, and wait in Interruption. A stop by the
/// terminal's key and its end are passed on too. What was ignored at the start stays ignored.
/// Called once, before the first child. On failure the result is False, and errno tells the reason.
bool RelaySignals();

/// Has the signals go to the process group @p group; 0 for none.
void RelayTo(int group);

/// The first of the signals that end the program, 0 while none has come. The program starts nothing
/// further, and ends by EndBySignal when its child has ended.
int Interruption();

/// Counts @p signal as one that came to the program itself.
void Interrupt(int signal);

/// A descriptor to poll, readable when a child may have ended or stopped since TakeNews.
int NewsDescriptor();
void TakeNews();

/// Stops the program by the default action of @p signal, and returns when it goes on.
void StopBy(int signal);

/// Ends the program by the default action of @p signal, which tells whoever waits for it how it
/// ended.
[[noreturn]] void EndBySignal(int signal);

/// Keeps all signals waiting while it lives.
class HeldSignals {
public:
    HeldSignals() {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &Former);
    }
    ~HeldSignals() { sigprocmask(SIG_SETMASK, &Former, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

private:
    sigset_t Former;
};

} // namespace rivenfall
