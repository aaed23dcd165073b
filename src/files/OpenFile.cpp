#include "files/OpenFile.h"

#include "files/FileError.h"

#include <unistd.h>

#include <utility>

namespace rivenfall {

namespace {

/// What @p call gives when no signal interrupts it.
template <typename Call>
auto Uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return Checked(result);
}

} // namespace

OpenFile::OpenFile(int folder, const QByteArray& name, int flags, mode_t mode)
    : plngDescriptor(Uninterrupted(
          [&] { return openat(folder, name.constData(), flags | O_CLOEXEC, mode); })) {}

OpenFile::~OpenFile() {
    if (IsOpen()) {
        close(plngDescriptor);
    }
}

OpenFile::OpenFile(OpenFile&& other) noexcept
    : plngDescriptor(std::exchange(other.plngDescriptor, -1)) {}

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept {
    std::swap(plngDescriptor, other.plngDescriptor);
    return *this;
}

struct stat OpenFile::Status() const {
    struct stat status;
    Checked(fstat(plngDescriptor, &status));
    return status;
}

QByteArray OpenFile::Read() const {
    QByteArray bytes(static_cast<qsizetype>(Status().st_size), Qt::Uninitialized);
    qsizetype read = 0;
    while (read < bytes.size()) {
        const ssize_t count = Uninterrupted([&] {
            return pread(plngDescriptor, bytes.data() + read,
                         static_cast<size_t>(bytes.size() - read), read);
        });
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
        done += Uninterrupted([&] {
            return pwrite(plngDescriptor, bytes.data() + done,
                          static_cast<size_t>(bytes.size() - done), done);
        });
    }
}

void OpenFile::Reserve(qsizetype length) const {
    try {
        if (length > 0) {
            Uninterrupted(
                [&] { return fallocate(plngDescriptor, FALLOC_FL_KEEP_SIZE, 0, length); });
        }
    } catch (const FileError& error) {
        if (!IsRefusal(error)) {
            throw;
        }
    }
}

void OpenFile::SetLength(qsizetype length) const {
    Uninterrupted([&] { return ftruncate(plngDescriptor, length); });
}

void OpenFile::Sync() const {
    Uninterrupted([&] { return fsync(plngDescriptor); });
}

void OpenFile::Close() {
    // The descriptor is gone whatever the result is. What was synced is safe from an interruption.
    const int result = close(std::exchange(plngDescriptor, -1));
    if (result < 0 && errno != EINTR) {
        throw FileErrorOf(errno);
    }
}

} // namespace rivenfall
