#include "files/OpenFile.h"

#include "files/FileError.h"

#include <unistd.h>

#include <utility>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// How often a file that was exchanged for another one meanwhile is looked at anew.
constexpr int MostLooks = 3;

void RefuseUnlessOrdinary(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) {
        throw FileError{u"it is a folder"_s};
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileError{u"it is no ordinary file"_s};
    }
}

} // namespace

OpenFile::OpenFile(int folder, const QByteArray& name, int flags, mode_t mode)
    : plngDescriptor(Checked(openat(folder, name.constData(), flags | O_CLOEXEC, mode))) {}

OpenFile::~OpenFile() {
    if (plngDescriptor >= 0) {
        close(plngDescriptor);
    }
}

OpenFile::OpenFile(OpenFile&& other) noexcept
    : plngDescriptor(std::exchange(other.plngDescriptor, -1)) {}

struct stat OpenFile::Status() const {
    struct stat status;
    Checked(fstat(plngDescriptor, &status));
    return status;
}

QByteArray OpenFile::Read() const {
    QByteArray bytes(static_cast<qsizetype>(Status().st_size), Qt::Uninitialized);
    qsizetype read = 0;
    while (read < bytes.size()) {
        const ssize_t count = Checked(pread(plngDescriptor, bytes.data() + read,
                                            static_cast<size_t>(bytes.size() - read), read));
        if (count == 0) {
            bytes.truncate(read);
        }
        read += count;
    }
    return bytes;
}

void OpenFile::Write(QByteArrayView bytes, qsizetype* written) const {
    qsizetype count = 0;
    qsizetype& done = written ? *written : count;
    done = 0;
    while (done < bytes.size()) {
        done += Checked(pwrite(plngDescriptor, bytes.data() + done,
                               static_cast<size_t>(bytes.size() - done), done));
    }
}

void OpenFile::SetLength(qsizetype length) const {
    Checked(ftruncate(plngDescriptor, length));
}

void OpenFile::Sync() const {
    Checked(fsync(plngDescriptor));
    // Some file systems tell only when a file is closed that a write failed. So a copy is closed,
    // and the file can still be put right.
    Checked(close(Checked(dup(plngDescriptor))));
}

OpenFile OpenOrdinary(int folder, const QByteArray& name, int flags) {
    // To open a device may do something to it, so this looks first; a pipe that gets the name
    // meanwhile would keep waiting. One honest change of the number is there: some overlays of two
    // file systems copy a file when it is first opened for writing.
    for (int look = 0; look < MostLooks; ++look) {
        const OpenFile place(folder, name, O_PATH | (flags & O_NOFOLLOW));
        const struct stat seen = place.Status();
        RefuseUnlessOrdinary(seen);
        OpenFile file(folder, name, flags | O_NONBLOCK);
        const struct stat opened = file.Status();
        if (opened.st_dev == seen.st_dev && opened.st_ino == seen.st_ino) {
            return file;
        }
    }
    throw FileError{u"other files keep taking its place"_s};
}

} // namespace rivenfall
