#pragma once

namespace rivenfall {

/// The terminal that the program is worked from, as its child sees it.
///
/// A child is in the background of the terminal, since it has a process group of its own. When it
/// reads the terminal itself, as a program that asks for a password does, the kernel stops it;
/// the terminal is then lent to it until it ends.
class Terminal {
public:
    ~Terminal() { TakeBack(); }

    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// Makes the process group @p group the one in the foreground. False where this program isn't
    /// in the foreground itself, and so has nothing to lend.
    bool LendTo(int group);

    bool IsLent() const { return plngTerminal >= 0; }

    /// Puts this program's own group back into the foreground.
    void TakeBack();

private:
    int plngTerminal = -1;
};

} // namespace rivenfall
