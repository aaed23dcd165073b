#include "CoreHarness.h"

#include "files/FileError.h"
#include "files/FileSaving.h"
#include "files/OpenFile.h"

#include <QDir>
#include <QRegularExpression>

#include <dlfcn.h>
#include <functional>
#include <optional>
#include <sys/xattr.h>
#include <unistd.h>

using namespace rivenfall;

namespace {

/// Asked before each call about files that this program makes. It gets the call's name and gives
/// the number of the error that the call is to fail with, or 0.
std::function<int(const QString& call)> ErrorOf;

/// What a call gives in the kernel's place; nothing where the kernel is to be asked.
std::optional<long> Answer(const QString& call) {
    if (const int error = ErrorOf ? ErrorOf(call) : 0; error != 0) {
        errno = error;
        return -1;
    }
    // A disk takes its time for a sync; nobody takes the power away here.
    return call.contains(u"sync") ? std::optional(0L) : std::nullopt;
}

} // namespace

/// Puts a function in the place of the system's. All that a call takes are words.
#define CALL(Name)                                                                                 \
    using Name##Call = long(long, long, long, long, long);                                         \
    Name##Call Name##InPlace asm(#Name);                                                           \
    long Name##InPlace(long a, long b, long c, long d, long e) {                                   \
        static auto* const real = reinterpret_cast<Name##Call*>(dlsym(RTLD_NEXT, #Name));          \
        const std::optional<long> given = Answer(QStringLiteral(#Name));                           \
        return given ? *given : real(a, b, c, d, e);                                               \
    }
CALL(close)
CALL(dup)
CALL(fchmod)
CALL(fchown)
CALL(fgetxattr)
CALL(flistxattr)
CALL(fremovexattr)
CALL(fsetxattr)
CALL(fstat)
CALL(fsync)
CALL(ftruncate)
CALL(linkat)
CALL(openat)
CALL(pread)
CALL(pwrite)
CALL(renameat)
CALL(syncfs)
CALL(unlinkat)

namespace {

const QByteArray Former(5000, 'f');
const QByteArray Longer(9000, 'n');

/// Calls of which only what comes of them counts.
const QStringList Rights = {u"fchmod"_s, u"fchown"_s, u"fremovexattr"_s, u"fsetxattr"_s};

const char* const AccessName = "system.posix_acl_access";
/// The owner and the user 1000 write, all others read; the mode says that the group writes.
const QByteArray AccessList = QByteArray::fromHex("0200000001000600ffffffff02000600e8030000"
                                                  "04000400ffffffff10000600ffffffff"
                                                  "20000400ffffffff");

/// A document that isn't there yet; one with a list of its own; one in a folder that hands a list
/// down; and one that has another name, which is written over.
enum class Place { New, Listed, HandedDown, Linked };

/// Saves in a folder of its own, which is the current one.
class FileSavingTest : public testing::Test {
protected:
    void TearDown() override { QDir::setCurrent(FormerDirectory); }

    /// Makes the folder anew.
    void Prepare(Place place) {
        Folder.emplace();
        QDir::setCurrent(Folder->path());
        if (place == Place::New) {
            return;
        }
        StoreBytes(u"doc"_s, Former);
        EXPECT_TRUE(geteuid() != 0 || chown("doc", 1234, 2000) == 0);
        const bool handed = place == Place::HandedDown;
        EXPECT_EQ(chmod("doc", handed ? 02644 : 0660), 0);
        // Where the file system has such.
        setxattr("doc", "user.origin", "here", 4, 0);
        setxattr(handed ? "." : "doc", handed ? "system.posix_acl_default" : AccessName,
                 AccessList.constData(), static_cast<size_t>(AccessList.size()), 0);
        EXPECT_TRUE(place != Place::Linked || link("doc", "other") == 0);
    }

    /// Of each entry of the folder but those that @p told names: what it is, who may use it, and
    /// what it holds.
    static QString State(const QString& told = {}) {
        QString state;
        for (const QFileInfo& file : QDir().entryInfoList(QDir::AllEntries | QDir::Hidden |
                                                          QDir::System | QDir::NoDotAndDotDot)) {
            const QString name = file.fileName();
            if (told.contains(name)) {
                continue;
            }
            state += name + u' ';
            struct stat status;
            EXPECT_EQ(lstat(name.toUtf8(), &status), 0);
            state += u"%1 %2 %3 "_s.arg(status.st_mode, 0, 8).arg(status.st_uid).arg(status.st_gid);
            for (const char* attribute : {AccessName, "user.origin"}) {
                QByteArray value(100, '\0');
                value.truncate(getxattr(name.toUtf8(), attribute, value.data(), 100));
                state += QString::fromLatin1(value.toHex()) + u' ';
            }
            state += (file.isFile() ? QString::fromUtf8(BytesOf(name)) : u"no file"_s) + u'\n';
        }
        return state;
    }

    /// The name of a new file, as long as it has one of its own.
    static QString Passing() {
        return QDir().entryList({u".rivenfall-*"_s}, QDir::Files | QDir::Hidden).join(u' ');
    }

    /// The reason why @p bytes can't be saved; empty if they were.
    static QString Save(const char* name, const QByteArray& bytes = Longer) {
        try {
            SaveFile(QString::fromUtf8(name), bytes);
            return {};
        } catch (const FileError& error) {
            return error.Reason;
        }
    }

    /// The same where the call @p number, from 1 on, fails with @p error, and with @p lasting all
    /// behind it.
    QString SaveWhereFails(const QByteArray& bytes, int number, int error, bool lasting) {
        Calls.clear();
        ErrorOf = [&](const QString& call) {
            // Only what the closing of a copy tells is heard.
            if (call == u"close" && !Calls.endsWith(u"dup"_s)) {
                return 0;
            }
            if (call == u"pwrite" && !Calls.contains(call) && QFile::exists(u"doc"_s)) {
                EXPECT_EQ(QFile::permissions(Passing()) & 0x77, 0) << "others may read it already";
            }
            Calls += call;
            return Calls.size() == number || (lasting && Calls.size() > number) ? error : 0;
        };
        QString told = Save("doc", bytes);
        ErrorOf = {};
        return told;
    }

    /// Lets each call of a save fail in turn: it is told, and costs nothing but what is told.
    void FailEachCall(Place place, const QByteArray& bytes, int error, bool lasting) {
        Prepare(place);
        const QString before = State();
        // A save leaves what a mere writing leaves.
        StoreBytes(u"doc"_s, bytes);
        const QString saved = State();
        Prepare(place);
        EXPECT_EQ(SaveWhereFails(bytes, 0, 0, false), u"");
        EXPECT_EQ(State(), saved);
        const qsizetype count = Calls.size();
        EXPECT_TRUE(Calls.join(u' ').contains(
            QRegularExpression(place == Place::Linked ? u"pwrite ftruncate fsync"_s
                                                      : u"pwrite .*fsync .*renameat .*fsync"_s)));
        for (int number = 1; number <= count; ++number) {
            Prepare(place);
            const QString told = SaveWhereFails(bytes, number, error, lasting);
            SCOPED_TRACE((Calls.join(u' ') + u" fails: "_s + told).toStdString());
            const QString call = Calls[number - 1];
            const bool written = told.isEmpty() || told.startsWith(u"it is written");
            const bool refused = error == EPERM && !lasting;
            const bool renamed = Calls.first(number - 1).contains(u"renameat");
            const bool replaces = call == u"linkat" || call == u"renameat";
            if ((Rights.contains(call) && !lasting) ||
                (refused && (renamed || (replaces && place != Place::New)))) {
                EXPECT_EQ(told, u"") << "there is another way";
            } else if (!refused) {
                EXPECT_NE(told, u"");
            }
            EXPECT_FALSE(refused && call == u"openat" && written && place != Place::Linked &&
                         !Calls.contains(u"renameat"))
                << "it was written over";
            if (!told.contains(u"can't be put back")) {
                EXPECT_EQ(State(told), written ? saved : before);
            } else if (const QString left = Passing(); !left.isEmpty()) {
                EXPECT_EQ(BytesOf(left), bytes);
                EXPECT_TRUE(told.contains(left));
            }
        }
    }

    QStringList Calls;

private:
    std::optional<QTemporaryDir> Folder;
    const QString FormerDirectory = QDir::currentPath();
};

TEST_F(FileSavingTest, ACallThatFailsIsToldAndCostsNothing) {
    for (const Place place : {Place::New, Place::Listed, Place::HandedDown, Place::Linked}) {
        for (const QByteArray& bytes : {Longer, QByteArray("short")}) {
            for (const int error : {EIO, EPERM}) {
                FailEachCall(place, bytes, error, false);
                FailEachCall(place, bytes, error, true);
            }
        }
    }
}

TEST_F(FileSavingTest, LinksAreFollowedAndStay) {
    Prepare(Place::New);
    EXPECT_EQ(symlink("link", "chain"), 0);
    EXPECT_EQ(symlink("doc", "link"), 0);
    // First to nowhere: then the file is made there.
    for (const QByteArray& bytes : {Former, Longer}) {
        EXPECT_EQ(Save("chain", bytes), u"");
        EXPECT_EQ(BytesOf(u"doc"_s), bytes);
        EXPECT_TRUE(QFileInfo(u"chain"_s).isSymLink() && QFileInfo(u"link"_s).isSymLink());
    }
    // Where all may write, somebody else's link may be a trap. Only root can set one here.
    if (geteuid() == 0) {
        EXPECT_EQ(chmod(".", 01777), 0);
        EXPECT_EQ(lchown("link", 1234, 1234), 0);
        EXPECT_EQ(Save("chain", "trap"), u"Permission denied");
        EXPECT_EQ(BytesOf(u"doc"_s), Longer);
    }
}

TEST_F(FileSavingTest, WhatIsNoOrdinaryFileStays) {
    Prepare(Place::Listed);
    QDir().mkdir(u"folder"_s);
    EXPECT_EQ(mkfifo("pipe", 0666), 0);
    EXPECT_EQ(symlink("pipe", "link"), 0);
    EXPECT_EQ(symlink("loop", "loop"), 0);
    const QString state = State();
    for (const char* name : {"pipe", "link", "loop", "folder", "doc/doc", "none/doc", "none/"}) {
        EXPECT_NE(Save(name), u"") << name;
    }
    EXPECT_EQ(State(), state);
}

TEST_F(FileSavingTest, WhatIsOpenedIsWhatWasLookedAt) {
    Prepare(Place::Listed);
    StoreBytes(u"other"_s, Longer);
    EXPECT_EQ(mkfifo("pipe", 0666), 0);
    const char* exchanged = "other";
    int openings = 0;
    ErrorOf = [&](const QString& call) {
        openings += call == u"openat" ? 1 : 0;
        return call == u"openat" && openings == 2 ? rename(exchanged, "doc") : 0;
    };
    const auto read = [] { return OpenOrdinary(AT_FDCWD, "doc", O_RDONLY).Read(); };
    EXPECT_EQ(read(), Longer);
    openings = 0;
    exchanged = "pipe";
    EXPECT_THROW(read(), FileError);
    ErrorOf = {};
}

} // namespace
