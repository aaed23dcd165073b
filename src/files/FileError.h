#pragma once

#include <QString>

#include <cerrno>

namespace rivenfall {

/// Thrown when the kernel doesn't do what a file was opened for.
struct FileError {
    /// The reason, as the end of a sentence.
    QString Reason;
    /// The error number as `errno` has it; 0 where the program itself refuses.
    int Number = 0;
};

/// The error with the number @p number, in the system's words.
FileError FileErrorOf(int number);

/// Whether the kernel doesn't allow or doesn't know what was asked of it here, so that another way
/// may lead there. Otherwise something went wrong.
bool IsRefusal(const FileError& error);

/// Gives the result of a call of the kernel. Throws FileError where it is -1.
template <typename Result>
Result Checked(Result result) {
    if (result < 0) {
        throw FileErrorOf(errno);
    }
    return result;
}

} // namespace rivenfall
