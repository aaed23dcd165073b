#include "runner/Terminal.h"

#include "runner/Signals.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace rivenfall {

bool Terminal::LendTo(int group) {
    const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC);
    if (terminal < 0) {
        return false;
    }
    if (tcgetpgrp(terminal) != getpgrp() || tcsetpgrp(terminal, group) != 0) {
        close(terminal);
        return false;
    }
    plngTerminal = terminal;
    return true;
}

void Terminal::TakeBack() {
    if (!IsLent()) {
        return;
    }
    // The kernel stops a program in the background that does this, unless it holds the signal.
    const HeldSignals held;
    tcsetpgrp(plngTerminal, getpgrp());
    close(std::exchange(plngTerminal, -1));
}

} // namespace rivenfall
