#pragma once

#include "system/Process.h"

#include <QString>

#include <csignal>

namespace rivenfall {

/// One command of a run, started and waited for as make does it: in this program's process group,
/// with its standard input, and writing straight to its standard output.
///
/// While the object lives INT, QUIT, HUP and TERM don't end this program at once. They wait for the
/// child's end, so that nobody who waits for this program goes on while the child is at work.
class Child {
public:
    Child();
    ~Child();

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Starts the program of @p commandLine. Gives 0, or the error number.
    int Start(const QString& commandLine);

    /// Waits for the end of the program that was started, and hands on to it what was sent to this
    /// program alone. Gives the status as waitpid has it, or, where one of the signals has come,
    /// ends this program by it.
    int Wait();

private:
    sigset_t pobjAwaited;
    sigset_t pobjFormer;
    Handle phndProcess = 0;
};

/// Looks whether the program @p name could be started from the current directory, and starts
/// nothing. Gives 0, or the error number that a start would most likely fail with: ENOENT where
/// there is no such program, or no such interpreter of a script, EACCES for one that may not be
/// executed, ENOEXEC for a script without "#!".
int LookForProgram(const QString& name);

} // namespace rivenfall
