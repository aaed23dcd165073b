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

/// A new file beside the one that it is for, under a name that no other file has. It goes with this
/// object, unless the name was given away.
class PassingFile {
public:
    PassingFile(const FilePlace& place, mode_t mode)
        : Folder(place.Folder.Descriptor()),
          PassingName(".rivenfall-" +
                      QByteArray::number(QRandomGenerator::system()->generate64(), 16)),
          File(Folder, PassingName, O_RDWR | O_CREAT | O_EXCL, mode) {}

    ~PassingFile() {
        if (!PassingName.isEmpty()) {
            unlinkat(Folder, PassingName.constData(), 0);
        }
    }

    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;

    void Remove() {
        Checked(unlinkat(Folder, Name(), 0));
        GiveNameAway();
    }

    const char* Name() const { return PassingName.constData(); }
    QByteArray GiveNameAway() { return std::exchange(PassingName, {}); }

private:
    const int Folder;
    QByteArray PassingName;

public:
    OpenFile File;
};

void RefuseUnlessOrdinary(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) {
        throw FileError{u"it is a folder"_s};
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileError{u"it is no ordinary file"_s};
    }
}

OpenFile OpenFormer(const FilePlace& place) {
    OpenFile former(place.Folder.Descriptor(), place.Name, O_RDWR | O_NOFOLLOW | O_NONBLOCK);
    RefuseUnlessOrdinary(former.Status());
    return former;
}

/// Renames @p fresh to the name of its place, with @p flags of renameat2. False where the kernel
/// refuses that.
bool Rename(const FilePlace& place, const PassingFile& fresh, unsigned int flags) {
    const int folder = place.Folder.Descriptor();
    if (renameat2(folder, fresh.Name(), folder, place.Name.constData(), flags) == 0) {
        return true;
    }
    const FileError error = FileErrorOf(errno);
    if (!IsRefusal(error)) {
        throw error;
    }
    return false;
}

/// Puts a file in an empty place.
void SaveNew(const FilePlace& place, const QByteArray& bytes) {
    const int folder = place.Folder.Descriptor();
    PassingFile fresh(place, 0666);
    fresh.File.Write(bytes);
    fresh.File.Sync();
    fresh.File.Close();
    if (!Rename(place, fresh, RENAME_NOREPLACE)) {
        // Some file systems know no flags.
        Checked(renameat(folder, fresh.Name(), folder, place.Name.constData()));
    }
    fresh.GiveNameAway();
    try {
        SyncNames(place);
    } catch (const FileError&) {
        unlinkat(folder, place.Name.constData(), 0);
        throw;
    }
}

/// Puts @p fresh where the former file stands, which has the other name until that is on the disk
/// and comes back where it fails. False where the kernel refuses that.
bool Exchange(const FilePlace& place, PassingFile& fresh) {
    const int folder = place.Folder.Descriptor();
    if (!Rename(place, fresh, RENAME_EXCHANGE)) {
        return false;
    }
    const QByteArray formerName = fresh.GiveNameAway();
    try {
        SyncNames(place);
        Checked(unlinkat(folder, formerName.constData(), 0));
    } catch (const FileError& error) {
        if (renameat(folder, formerName.constData(), folder, place.Name.constData()) != 0) {
            throw FileError{u"%1, and what it held is in the file %2 beside it"_s.arg(
                error.Reason, QFile::decodeName(formerName))};
        }
        throw;
    }
    return true;
}

/// The same on file systems that can't exchange names. There the former file goes at once.
bool Replace(const FilePlace& place, PassingFile& fresh) {
    if (!Rename(place, fresh, 0)) {
        return false;
    }
    fresh.GiveNameAway();
    try {
        SyncNames(place);
    } catch (const FileError& error) {
        throw FileError{
            u"it is written, but a crash of the system may undo that: %1"_s.arg(error.Reason)};
    }
    return true;
}

/// Writes @p bytes over what the file @p file holds, and puts @p former back if that fails.
/// @p fresh is a copy of the bytes, or null.
void Overwrite(const FilePlace& place, OpenFile& file, const QByteArray& former,
               const QByteArray& bytes, PassingFile* fresh) {
    qsizetype touched = 0;
    try {
        file.Reserve(bytes.size());
        file.Write(bytes, &touched);
        touched = std::max(touched, former.size());
        file.SetLength(bytes.size());
        file.Sync();
        file.Close();
        if (fresh) {
            fresh->Remove();
        }
    } catch (const FileError& error) {
        try {
            if (!file.IsOpen()) {
                file = OpenFormer(place);
            }
            file.Write(QByteArrayView(former).first(std::min(touched, former.size())));
            file.SetLength(former.size());
            file.Sync();
            file.Close();
        } catch (const FileError& second) {
            QString reason =
                u"%1, and what it held can't be put back: %2"_s.arg(error.Reason, second.Reason);
            if (fresh) {
                reason += u"; what it should hold is in the file %1 beside it"_s.arg(
                    QFile::decodeName(fresh->GiveNameAway()));
            }
            throw FileError{reason};
        }
        throw;
    }
}

void SaveInPlace(const FilePlace& place, const QByteArray& bytes, PassingFile* fresh) {
    OpenFile file = OpenFormer(place);
    if (file.Status().st_size > LargestOverwritten) {
        throw FileError{u"it is too large to be written over"_s};
    }
    const QByteArray former = file.Read();
    Overwrite(place, file, former, bytes, fresh);
}

/// Makes the file that is to replace one with the mode @p mode. Until it gets that mode its owner
/// alone may use it. Nothing where the kernel refuses to make it.
void MakeBeside(std::optional<PassingFile>& fresh, const FilePlace& place, mode_t mode) {
    try {
        fresh.emplace(place, mode & (S_IRUSR | S_IWUSR));
    } catch (const FileError& error) {
        if (!IsRefusal(error)) {
            throw;
        }
    }
}

void SaveOver(const FilePlace& place, const QByteArray& bytes) {
    OpenFile former = OpenFormer(place);
    const struct stat status = former.Status();
    std::optional<PassingFile> fresh;
    MakeBeside(fresh, place, status.st_mode);
    bool replaceable = false;
    if (fresh) {
        fresh->File.Write(bytes);
        replaceable = status.st_nlink == 1 && CopyRights(former, fresh->File);
        fresh->File.Sync();
        fresh->File.Close();
    }
    former.Close();
    if (!replaceable || !(Exchange(place, *fresh) || Replace(place, *fresh))) {
        SaveInPlace(place, bytes, fresh ? &*fresh : nullptr);
    }
}

} // namespace

void SaveFile(const QString& path, const QByteArray& bytes) {
    const QByteArray name = PathBytes(path);
    struct stat status;
    const bool exists = stat(name.constData(), &status) == 0;
    if (!exists && errno != ENOENT) {
        throw FileErrorOf(errno);
    }
    if (exists) {
        // To open a device may do something to it.
        RefuseUnlessOrdinary(status);
    }
    const FilePlace place = PlaceOf(name);
    if (exists) {
        SaveOver(place, bytes);
    } else {
        SaveNew(place, bytes);
    }
}

} // namespace rivenfall
