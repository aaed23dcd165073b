#include "files/FileSaving.h"

#include "files/FileError.h"
#include "files/FilePath.h"
#include "files/FilePlace.h"
#include "files/FileRights.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <unistd.h>
#include <utility>

namespace rivenfall {

namespace {

using namespace Qt::StringLiterals;

/// What a file holds that is to be written over stays in memory meanwhile. No document is longer.
constexpr off_t LargestOverwritten = 1LL << 30;

/// A new file beside the one that it is for.
struct PassingFile {
    std::optional<OpenFile> File;
    /// Empty as long as it has none: then it goes with this process.
    QByteArray Name;
};

QByteArray UnusedName() {
    return ".rivenfall-" + QByteArray::number(QRandomGenerator::system()->generate64(), 16);
}

void Make(PassingFile& fresh, const FilePlace& place, mode_t mode) {
    const int folder = place.Folder.Descriptor();
    try {
        fresh.File.emplace(folder, ".", O_RDWR | O_TMPFILE, mode);
    } catch (const FileError& error) {
        if (!IsRefusal(error)) {
            throw;
        }
        // Some file systems know no file without a name.
        const QByteArray name = UnusedName();
        fresh.File.emplace(folder, name, O_RDWR | O_CREAT | O_EXCL, mode);
        fresh.Name = name;
    }
}

void GiveName(PassingFile& fresh, const FilePlace& place) {
    if (fresh.Name.isEmpty()) {
        const QByteArray file = "/proc/self/fd/" + QByteArray::number(fresh.File->Descriptor());
        const QByteArray name = UnusedName();
        Checked(linkat(AT_FDCWD, file.constData(), place.Folder.Descriptor(), name.constData(),
                       AT_SYMLINK_FOLLOW));
        fresh.Name = name;
    }
}

/// Removes the file. Gives what is to be told where it stays.
QString Remove(PassingFile& fresh, const FilePlace& place) {
    const QByteArray name = std::exchange(fresh.Name, {});
    return name.isEmpty() || unlinkat(place.Folder.Descriptor(), name.constData(), 0) == 0
               ? QString()
               : u", and the file %1 stays beside it"_s.arg(QFile::decodeName(name));
}

/// The file that is at the place; nothing where it is empty.
std::optional<OpenFile> OpenFormer(const FilePlace& place) {
    try {
        return OpenOrdinary(place.Folder.Descriptor(), place.Name, O_RDWR | O_NOFOLLOW);
    } catch (const FileError& error) {
        if (error.Number != ENOENT) {
            throw;
        }
        return {};
    }
}

/// Puts @p bytes in a new file and that in the place of the former one, if there is one. Until the
/// new one gets the former one's mode its owner alone may use it. False where the kernel refuses
/// any of that; then the new file stays, if it is complete.
bool Replace(const FilePlace& place, const std::optional<OpenFile>& former, const QByteArray& bytes,
             PassingFile& fresh) try {
    Make(fresh, place, former ? former->Status().st_mode & (S_IRUSR | S_IWUSR) : 0666);
    fresh.File->Write(bytes);
    const bool alike =
        !former || (former->Status().st_nlink == 1 && CopyRights(*former, *fresh.File));
    fresh.File->Sync();
    GiveName(fresh, place);
    if (alike) {
        const int folder = place.Folder.Descriptor();
        Checked(renameat(folder, fresh.Name.constData(), folder, place.Name.constData()));
        fresh.Name.clear();
    }
    return alike;
} catch (const FileError& error) {
    if (!former || !IsRefusal(error)) {
        throw;
    }
    return false;
}

/// Writes @p bytes over what @p file holds, and puts that back if it fails. @p fresh is a copy of
/// the bytes, if there is one.
void Overwrite(const OpenFile& file, const QByteArray& bytes, PassingFile& fresh) {
    if (file.Status().st_size > LargestOverwritten) {
        throw FileError{u"it is too large to be written over"_s};
    }
    const QByteArray former = file.Read();
    qsizetype touched = 0;
    try {
        file.Write(bytes, &touched);
        touched = std::max(touched, former.size());
        file.SetLength(bytes.size());
        file.Sync();
    } catch (const FileError& error) {
        try {
            file.Write(QByteArrayView(former).first(std::min(touched, former.size())));
            file.SetLength(former.size());
            file.Sync();
        } catch (const FileError& second) {
            QString reason =
                u"%1, and what it held can't be put back: %2"_s.arg(error.Reason, second.Reason);
            if (const QByteArray name = std::exchange(fresh.Name, {}); !name.isEmpty()) {
                reason += u"; what it should hold is in the file %1 beside it"_s.arg(
                    QFile::decodeName(name));
            }
            throw FileError{reason};
        }
        throw;
    }
}

/// Comes back when the names in the folder, in which @p file has one, are on the disk.
void SyncNames(const OpenFile& folder, const OpenFile& file) {
    try {
        OpenFile(folder.Descriptor(), ".", O_RDONLY | O_DIRECTORY).Sync();
    } catch (const FileError& error) {
        if (!IsRefusal(error)) {
            throw;
        }
        // The folder can't be listed, or not be synced alone. Then all of its file system is.
        Checked(syncfs(file.Descriptor()));
    }
}

} // namespace

void SaveFile(const QString& path, const QByteArray& bytes) {
    const FilePlace place = PlaceOf(PathBytes(path));
    const std::optional<OpenFile> former = OpenFormer(place);
    PassingFile fresh;
    bool replaced = false;
    try {
        replaced = Replace(place, former, bytes, fresh);
        if (!replaced) {
            Overwrite(*former, bytes, fresh);
        }
    } catch (const FileError& error) {
        throw FileError{error.Reason + Remove(fresh, place)};
    }
    if (const QString left = Remove(fresh, place); !left.isEmpty()) {
        throw FileError{u"it is written"_s + left};
    }
    try {
        if (replaced) {
            SyncNames(place.Folder, *fresh.File);
        }
    } catch (const FileError& error) {
        throw FileError{
            u"it is written, but a crash of the system may undo that: %1"_s.arg(error.Reason)};
    }
}

} // namespace rivenfall
