#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <fcntl.h>
#include <sys/stat.h>

namespace rivenfall {

/// A file or folder that is open, for what must not fail unnoticed: each member throws FileError
/// unless all that it stands for was done. No child inherits it.
class OpenFile {
public:
    /// Opens @p name, which is looked up from the open folder @p folder (AT_FDCWD: the current
    /// directory), with @p flags as `open` takes them. A file that this makes gets @p mode.
    OpenFile(int folder, const QByteArray& name, int flags, mode_t mode = 0);
    /// Closes it. Nobody hears whether that failed; Sync has told before what was lost.
    ~OpenFile();

    OpenFile(OpenFile&& other) noexcept;

    int Descriptor() const { return plngDescriptor; }
    struct stat Status() const;

    /// All of the file's bytes.
    QByteArray Read() const;

    /// Writes @p bytes from the front on. Where @p written is given it becomes the number of bytes
    /// that were written, also where the next one fails.
    void Write(QByteArrayView bytes, qsizetype* written = nullptr) const;

    void SetLength(qsizetype length) const;

    /// Comes back when the file's bytes and rights are on the disk.
    void Sync() const;

private:
    int plngDescriptor;
};

/// Opens the ordinary file @p name for reading or saving, as above. What is opened is the file that
/// was looked at. Throws FileError for whatever else has that name, and never waits for it.
OpenFile OpenOrdinary(int folder, const QByteArray& name, int flags);

} // namespace rivenfall
