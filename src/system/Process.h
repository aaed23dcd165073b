#pragma once

#include <QString>

namespace rivenfall {

/// Something of the kernel's that the program holds: one end of a pipe, or a process. 0 is none.
using Handle = int;

/// The handles that a child gets as its standard streams.
struct StandardStreams {
    Handle Input = 0;
    Handle Output = 0;
    Handle Error = 0;
};

/// What a read of a pipe came to.
enum class ReadOutcome {
    Data,    ///< At least one byte was read.
    Nothing, ///< Nothing has been written yet.
    End,     ///< Every write end is closed, or the read failed.
};

/// The process group that a child is started in.
enum class ChildGroup {
    Shared, ///< This program's.
    Own,    ///< A new one, which has the child's number and takes in what the child starts.
};

/// Has the kernel reap every child when it ends. A program that asks no child how it ended calls it
/// before it starts the first one; any other waits for each child, by waitpid.
void ReapChildrenInKernel();

/// True where whoever started this program had it ignore @p signal, as nohup does.
bool IgnoredAtStart(int signal);

/// Makes a pipe whose ends no child inherits. The caller closes both ends. On failure the result is
/// False and LastError tells the reason.
bool CreatePipe(Handle& readEnd, Handle& writeEnd);

/// A second handle on the pipe end @p handle, which the caller closes. 0 on failure.
Handle DuplicateHandle(Handle handle);

/// Starts the program that @p commandLine names with the arguments that stand behind it.
///
/// The name is looked up along PATH unless it holds a slash. The child gets @p streams and no
/// other descriptor, this program's environment and current directory, an empty signal mask and
/// the default action for every signal but those that were ignored at this program's start. On
/// success @p process identifies the child; it is a process number and never closed. On failure
/// the result is False and LastError tells the reason (2 no such program, 7 too
/// long, 12 no memory, 13 not executable).
bool CreateProcess(const QString& commandLine, const StandardStreams& streams, Handle& process,
                   ChildGroup group = ChildGroup::Shared);

/// Reads at most @p size bytes from the pipe end @p handle into @p buffer without waiting.
/// @p count becomes the number of bytes read.
ReadOutcome ReadFile(Handle handle, char* buffer, int size, int& count);

/// Closes the pipe end @p handle. 0 is let pass.
void CloseHandle(Handle handle);

/// The error number of the last operation above that failed, as `errno` has it.
int LastError();

} // namespace rivenfall
