#include "files/FileRights.h"

#include "files/FileError.h"
#include "files/OpenFile.h"

#include <QMap>

#include <algorithm>
#include <climits>
#include <sys/xattr.h>
#include <tuple>
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

} // namespace

bool CopyRights(const OpenFile& from, const OpenFile& to) {
    constexpr mode_t ModeBits = 07777;
    const int fresh = to.Descriptor();
    // A step may be refused, and some file systems say yes and keep what they had. So what has come
    // of it is looked at before the next one, which might allow too much otherwise. In this order:
    // a change of owner takes bits off the mode, and a list sets the group's.
    const struct stat wanted = from.Status();
    std::ignore = fchown(fresh, wanted.st_uid, wanted.st_gid);
    const struct stat owned = to.Status();
    if (owned.st_uid != wanted.st_uid || owned.st_gid != wanted.st_gid) {
        return false;
    }
    const Attributes attributes = AttributesOf(from);
    const Attributes present = AttributesOf(to);
    // A folder may hand its own list down to whatever is made in it.
    for (const QByteArray& name : present.keys()) {
        if (!attributes.contains(name)) {
            fremovexattr(fresh, name.constData());
        }
    }
    for (auto each = attributes.cbegin(); each != attributes.cend(); ++each) {
        if (present.value(each.key()) != *each &&
            fsetxattr(fresh, each.key().constData(), each->constData(),
                      static_cast<size_t>(each->size()), 0) < 0) {
            return false;
        }
    }
    if (AttributesOf(to) != attributes) {
        return false;
    }
    fchmod(fresh, wanted.st_mode & ModeBits);
    return to.Status().st_mode == wanted.st_mode;
}

} // namespace rivenfall
