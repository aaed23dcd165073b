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

/// Has the kernel reap every child when it ends. A program that asks no child how it ended calls it
/// before it starts the first one; any other waits for each child, by waitpid.
void ReapChildrenInKernel();

/// True where whoever started this program had it ignore @p signal, as nohup does.
bool IgnoredAtStart(int signal);

/// Makes the two pipes of a child: its standard input, whose other end becomes @p inputWrite, and
/// the one stream for all its output, whose other end becomes @p outputRead. The caller closes all
/// four ends. On failure nothing is left open, the result is False and LastError tells the reason.
bool CreatePipes(StandardStreams& streams, Handle& inputWrite, Handle& outputRead);

/// Starts the program that @p commandLine names with the arguments that stand behind it, on
/// @p streams and without any other descriptor.
///
/// The name is looked up along PATH unless it holds a slash. The child gets this program's
/// environment, process group and current directory, an empty signal mask and the default action
/// for every signal but those that were ignored at this program's start. On success @p process is
/// the child's process number, which is never closed. On failure the result is False and LastError
/// tells the reason (2 no such program, 7 too long, 12 no memory, 13 not executable).
bool CreateProcess(const QString& commandLine, const StandardStreams& streams, Handle& process);

/// The same, but the child gets this program's own standard input and output, the output as its
/// standard error too, and every descriptor that this program has inherited.
bool CreateProcess(const QString& commandLine, Handle& process);

/// Reads at most @p size bytes from the pipe end @p handle into @p buffer without waiting.
/// With data @p count becomes the number of bytes read.
ReadOutcome ReadFile(Handle handle, char* buffer, int size, int& count);

/// Closes the pipe end @p handle; does nothing for 0, which is none.
void CloseHandle(Handle handle);

/// The error number of the last operation above that failed, as `errno` has it.
int LastError();

} // namespace rivenfall
