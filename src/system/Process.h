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

/// Makes a pipe whose ends no child inherits. The caller closes both ends. On failure the result is
/// False and LastError tells the reason.
bool CreatePipe(Handle& readEnd, Handle& writeEnd);

/// A second handle on the pipe end @p handle, which the caller closes. 0 on failure.
Handle DuplicateHandle(Handle handle);

/// Starts the program that @p commandLine names with the arguments that stand behind it.
///
/// The name is looked up along PATH unless it holds a slash. The child gets @p streams and no
/// other descriptor, this program's environment and current directory, an empty signal mask and
/// the default action for every signal. On success @p process identifies the child; an ended
/// child leaves nothing behind, so this handle is never closed. On failure the result is False
/// and LastError tells the reason (2 no such program, 13 not executable).
bool CreateProcess(const QString& commandLine, const StandardStreams& streams, Handle& process);

/// Reads at most @p size bytes from the pipe end @p handle into @p buffer without waiting.
/// @p count becomes the number of bytes read.
ReadOutcome ReadFile(Handle handle, char* buffer, int size, int& count);

/// Closes the pipe end @p handle. 0 is let pass.
void CloseHandle(Handle handle);

/// The error number of the last operation above that failed, as `errno` has it.
int LastError();

} // namespace rivenfall
