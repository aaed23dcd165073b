#include "files/FileRights.h"

#include "files/FileError.h"
#include "files/OpenFile.h"

#include <QMap>

#include <algorithm>
#include <climits>
#include <sys/xattr.h>
#include <unistd.h>

namespace rivenfall {

namespace {

/// An access control list is one of them, "system.posix_acl_access".
using Attributes = QMap<QByteArray, QByteArray>;

/// Whether the kernel makes this attribute from a file's bytes, or drops it when they change.
bool BelongsToBytes(const QByteArray& name) {
    constexpr QByteArrayView Names[] = {"security.capability", "security.evm", "security.ima"};
    return std::find(std::begin(Names), std::end(Names), name) != std::end(Names);
}

Attributes AttributesOf(const OpenFile& file) {
    QByteArray names(XATTR_LIST_MAX, Qt::Uninitialized);
    const ssize_t length = flistxattr(file.Descriptor(), names.data(), XATTR_LIST_MAX);
    if (length < 0 && errno == ENOTSUP) {
        return {};
    }
    names.truncate(Checked(length));
    Attributes attributes;
    QByteArray value(XATTR_SIZE_MAX, Qt::Uninitialized);
    // Each name ends in a NUL.
    for (const QByteArray& name : names.split('\0')) {
        if (!name.isEmpty() && !BelongsToBytes(name)) {
            attributes[name] = value.first(Checked(
                fgetxattr(file.Descriptor(), name.constData(), value.data(), XATTR_SIZE_MAX)));
        }
    }
    return attributes;
}

void CopyAttributes(const OpenFile& from, const OpenFile& to) {
    const Attributes wanted = AttributesOf(from);
    const Attributes present = AttributesOf(to);
    for (auto own = present.cbegin(); own != present.cend(); ++own) {
        // A folder may hand its own list down to whatever is made in it. Some file systems show a
        // list under a second name, which goes along with the first.
        if (!wanted.contains(own.key()) &&
            fremovexattr(to.Descriptor(), own.key().constData()) < 0 && errno != ENODATA &&
            errno != ENOTSUP) {
            throw FileErrorOf(errno);
        }
    }
    for (auto other = wanted.cbegin(); other != wanted.cend(); ++other) {
        const auto own = present.constFind(other.key());
        if (own == present.cend() || *own != *other) {
            Checked(fsetxattr(to.Descriptor(), other.key().constData(), other->constData(),
                              static_cast<size_t>(other->size()), 0));
        }
    }
}

} // namespace

bool CopyRights(const OpenFile& from, const OpenFile& to) {
    constexpr mode_t ModeBits = 07777;
    const struct stat wanted = from.Status();
    try {
        // In this order: a change of owner takes bits off the mode, and a list sets the group's.
        const struct stat present = to.Status();
        if (present.st_uid != wanted.st_uid || present.st_gid != wanted.st_gid) {
            Checked(fchown(to.Descriptor(), wanted.st_uid, wanted.st_gid));
        }
        CopyAttributes(from, to);
        if (to.Status().st_mode != wanted.st_mode) {
            Checked(fchmod(to.Descriptor(), wanted.st_mode & ModeBits));
        }
    } catch (const FileError& error) {
        if (!IsRefusal(error)) {
            throw;
        }
        return false;
    }
    // Some file systems say yes and keep what they had.
    const struct stat result = to.Status();
    return result.st_uid == wanted.st_uid && result.st_gid == wanted.st_gid &&
           result.st_mode == wanted.st_mode;
}

} // namespace rivenfall
