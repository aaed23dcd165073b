#pragma once

#include "runner/Terminal.h"
#include "system/Process.h"

#include <QString>

#include <csignal>

namespace rivenfall {

class Output;

/// One command of a run, from the start of its program to the end of its output.
class Child {
public:
    Child();
    ~Child();

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Starts the program of @p commandLine in a process group of its own, with an open and silent
    /// standard input. Starts nothing, with the error EINTR, when the program has been told to end.
    /// Gives 0, or the error number.
    int Start(const QString& commandLine);

    /// Copies what the child writes to @p output until the last holder of the other end has closed
    /// it and the child has ended. When the program has been told to end, the child's end is
    /// enough, and what it leaves in its group is ended too. Gives the status as waitpid has it.
    int Follow(Output& output);

private:
    void CloseChildEnds();
    void CopyOutput(Output& output);
    void LookAtProcess();
    void OnStop(int signal);
    void TakeTerminalBack(const siginfo_t& end);
    int Reap();

    StandardStreams pobjStreams;
    Handle phndInputWrite = 0;
    Handle phndOutput = 0;
    Handle phndProcess = 0;
    bool pblnOutputOpen = false;
    bool pblnRunning = false;
    Terminal pobjTerminal;
};

} // namespace rivenfall
