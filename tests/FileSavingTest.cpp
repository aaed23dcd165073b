#include "CoreHarness.h"

#include "files/FileError.h"
#include "files/FileSaving.h"
#include "files/OpenFile.h"

#include <QDir>

#include <dlfcn.h>
#include <functional>
#include <optional>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

using namespace rivenfall;

namespace {

/// Asked before each call about files that this program makes. It gets the call's name and gives
/// the number of the error that the call is to fail with, or 0.
std::function<int(const std::string& name)> ErrorOf;

/// What a call gives in the kernel's place; nothing where the kernel is to be asked.
std::optional<long> Answer(const std::string& name) {
    // Only what the closing of a copy tells is heard.
    static std::string former;
    const bool heard = std::exchange(former, name) == "dup" || name != "close";
    if (!ErrorOf || !heard) {
        return {};
    }
    if (const int error = ErrorOf(name); error != 0) {
        errno = error;
        return -1;
    }
    // A disk takes its time for a sync; nobody takes the power away here.
    return name.find("sync") != std::string::npos ? std::optional(0L) : std::nullopt;
}

} // namespace

/// Puts a function in the place of the system's. All that a call takes are words.
#define CALL(Name)                                                                                 \
    using Name##Call = long(long, long, long, long, long);                                         \
    Name##Call Name##InPlace asm(#Name);                                                           \
    long Name##InPlace(long a, long b, long c, long d, long e) {                                   \
        static auto* const real = reinterpret_cast<Name##Call*>(dlsym(RTLD_NEXT, #Name));          \
        const std::optional<long> given = Answer(#Name);                                           \
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

/// Calls in whose place there is another way where the kernel refuses them, and those that are made
/// again where a signal interrupts them.
const QStringList Avoidable = {u"fchmod"_s, u"fchown"_s, u"fsetxattr"_s, u"linkat"_s,
                               u"renameat"_s};
const QStringList Repeated = {u"close"_s,  u"fsync"_s, u"ftruncate"_s,
                              u"openat"_s, u"pread"_s, u"pwrite"_s};

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
    void TearDown() override {
        QDir::setCurrent(FormerDirectory);
        umask(FormerMask);
    }

    /// Makes the folder anew.
    void Prepare(Place place) {
        Folder.emplace();
        QDir::setCurrent(Folder->path());
        const bool handed = place == Place::HandedDown;
        if (place != Place::New) {
            StoreBytes(u"doc"_s, Former);
            EXPECT_TRUE(geteuid() != 0 || chown("doc", 1234, 2000) == 0);
            EXPECT_EQ(chmod("doc", handed ? 02644 : 0660), 0);
            Set("doc", "user.origin", "here");
            Set(handed ? "." : "doc", handed ? "system.posix_acl_default" : AccessName, AccessList);
        }
        EXPECT_TRUE(place != Place::Linked || link("doc", "other") == 0);
    }

    /// Gives a file an attribute, where the file system has such.
    static void Set(const char* name, const char* attribute, const QByteArray& value) {
        setxattr(name, attribute, value, static_cast<size_t>(value.size()), 0);
    }

    /// Of each entry of the folder but those that @p told names: what it is and who may use it.
    static std::string State(const std::string& told = {}) {
        QString state;
        for (const QString& name : QDir().entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                    QDir::NoDotAndDotDot)) {
            if (told.find(name.toStdString()) != std::string::npos) {
                continue;
            }
            struct stat status;
            EXPECT_EQ(lstat(name.toUtf8(), &status), 0);
            state += u"%1 %2 %3 %4"_s.arg(name).arg(status.st_mode, 0, 8).arg(status.st_uid);
            state = state.arg(status.st_gid);
            for (const char* attribute : {AccessName, "user.origin"}) {
                QByteArray value(100, '\0');
                value.truncate(lgetxattr(name.toUtf8(), attribute, value.data(), 100));
                state += u' ' + QString::fromLatin1(value.toHex());
            }
            state += u'\n';
        }
        return state.toStdString();
    }

    /// The name of a new file, as long as it has one of its own.
    static QString Passing() {
        return QDir().entryList({u".rivenfall-*"_s}, QDir::Files | QDir::Hidden).join(u' ');
    }

    /// The reason why @p bytes can't be saved; empty if they were.
    static std::string Save(const char* name, const QByteArray& bytes = Longer) {
        try {
            SaveFile(QString::fromUtf8(name), bytes);
            return {};
        } catch (const FileError& error) {
            return error.Reason.toStdString();
        }
    }

    /// The same where the call @p number, from 1 on, fails with @p error, and with @p lasting all
    /// behind it.
    std::string SaveWhereFails(int number, int error, bool lasting = false) {
        Calls.clear();
        ErrorOf = [&](const std::string& name) {
            if (name == "pwrite" && !Calls.contains(u"pwrite") && QFile::exists(u"doc"_s)) {
                EXPECT_EQ(QFile::permissions(Passing()) & 0x77, 0) << "others may read it already";
            }
            Calls += QString::fromStdString(name);
            return Calls.size() == number || (lasting && Calls.size() > number) ? error : 0;
        };
        std::string told = Save("doc", Bytes);
        ErrorOf = {};
        return told;
    }

    void SaveWhole(Place place) {
        EXPECT_EQ(SaveWhereFails(0, 0), "");
        EXPECT_EQ(BytesOf(u"doc"_s), Bytes);
        EXPECT_LT(Calls.lastIndexOf(u"pwrite"), Calls.lastIndexOf(u"fsync"));
        if (place != Place::Linked) {
            EXPECT_LT(Calls.lastIndexOf(u"pwrite"), Calls.indexOf(u"fsync"));
            EXPECT_LT(Calls.indexOf(u"fsync"), Calls.indexOf(u"renameat"));
            EXPECT_LT(Calls.indexOf(u"renameat"), Calls.lastIndexOf(u"fsync"));
        }
    }

    /// Lets each call of a save fail in turn: it is told, and costs nothing but what is told.
    void FailEachCall(Place place, int error, bool lasting) {
        Prepare(place);
        const std::string before = State();
        SaveWhole(place);
        const std::string saved = State();
        EXPECT_TRUE(place == Place::New ? saved.rfind("doc 100640 ", 0) == 0 : saved == before);
        const qsizetype count = Calls.size();
        for (int number = 1; number <= count; ++number) {
            Prepare(place);
            const std::string told = SaveWhereFails(number, error, lasting);
            SCOPED_TRACE(Calls.join(u' ').toStdString() + " fails: " + told);
            const QString call = Calls[number - 1];
            const bool written = told.empty() || told.rfind("it is written", 0) == 0;
            const bool replaces = place == Place::Listed || place == Place::HandedDown;
            EXPECT_FALSE(error == EIO && told.empty());
            EXPECT_FALSE(error == EINTR && Repeated.contains(call) && !told.empty());
            EXPECT_FALSE(error == EPERM && replaces && Avoidable.contains(call) && !told.empty());
            EXPECT_FALSE(error == EPERM && replaces && call == u"openat" && written &&
                         !Calls.contains(u"renameat"))
                << "it was written over";
            if (told.find("can't be put back") == std::string::npos) {
                EXPECT_EQ(State(told), written ? saved : before);
                EXPECT_TRUE(State(told).empty() || BytesOf(u"doc"_s) == (written ? Bytes : Former));
            } else if (const QString left = Passing(); !left.isEmpty()) {
                EXPECT_EQ(BytesOf(left), Bytes);
                EXPECT_NE(told.find(left.toStdString()), std::string::npos);
            }
        }
    }

    QByteArray Bytes = Longer;
    QStringList Calls;

private:
    std::optional<QTemporaryDir> Folder;
    const QString FormerDirectory = QDir::currentPath();
    const mode_t FormerMask = umask(027);
};

TEST_F(FileSavingTest, ACallThatFailsIsToldAndCostsNothing) {
    for (const Place place : {Place::New, Place::Listed, Place::HandedDown, Place::Linked}) {
        for (const QByteArray& bytes : {Longer, QByteArray("short")}) {
            Bytes = bytes;
            for (const int error : {EIO, EPERM, EINTR}) {
                FailEachCall(place, error, false);
            }
            FailEachCall(place, EIO, true);
        }
    }
}

TEST_F(FileSavingTest, LinksStay) {
    Prepare(Place::New);
    EXPECT_EQ(symlink("link", "chain"), 0);
    EXPECT_EQ(symlink("doc", "link"), 0);
    // First to nowhere: then the file is made there.
    for (const QByteArray& bytes : {Former, Longer}) {
        EXPECT_EQ(Save("chain", bytes), "");
        EXPECT_EQ(BytesOf(u"doc"_s), bytes);
        EXPECT_TRUE(QFileInfo(u"chain"_s).isSymLink() && QFileInfo(u"link"_s).isSymLink());
    }
}

TEST_F(FileSavingTest, WhatIsNoOrdinaryFileStays) {
    Prepare(Place::Listed);
    QDir().mkdir(u"folder"_s);
    EXPECT_EQ(mkfifo("pipe", 0666), 0);
    EXPECT_EQ(symlink("pipe", "link to a pipe"), 0);
    EXPECT_EQ(symlink("loop", "loop"), 0);
    const std::string state = State();
    for (const char* name : {"link to a pipe", "loop", "doc/doc", "none/doc", "none/"}) {
        EXPECT_NE(Save(name), "") << name;
    }
    EXPECT_EQ(Save("pipe"), "it is no ordinary file");
    EXPECT_EQ(Save("folder"), "it is a folder");
    EXPECT_EQ(State(), state);
    EXPECT_EQ(BytesOf(u"doc"_s), Former);
}

TEST_F(FileSavingTest, WhatIsOpenedIsWhatWasLookedAt) {
    Prepare(Place::Listed);
    EXPECT_EQ(mkfifo("pipe", 0666), 0);
    for (const char* other : {"doc too", "pipe"}) {
        StoreBytes(u"doc too"_s, Longer);
        int openings = 0;
        ErrorOf = [&](const std::string& name) {
            openings += name == "openat" ? 1 : 0;
            return name == "openat" && openings == 2 ? rename(other, "doc") : 0;
        };
        const auto read = [] { return OpenOrdinary(AT_FDCWD, "doc", O_RDONLY).Read(); };
        if (other == std::string("pipe")) {
            EXPECT_THROW(read(), FileError);
            EXPECT_EQ(openings, 3);
        } else {
            EXPECT_EQ(read(), Longer);
            EXPECT_EQ(openings, 4) << "it wasn't looked at again";
        }
        ErrorOf = {};
    }
}

TEST_F(FileSavingTest, NoLinkOfAnotherIsFollowedWhereAllMayWrite) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes links of another owner";
    }
    Prepare(Place::Listed);
    EXPECT_EQ(symlink("doc", "link"), 0);
    EXPECT_EQ(chmod(".", 01777), 0);
    EXPECT_EQ(Save("link"), "");
    EXPECT_EQ(lchown("link", 1234, 1234), 0);
    EXPECT_EQ(Save("link", "trap"), "Permission denied");
    EXPECT_EQ(BytesOf(u"doc"_s), Longer);
}

} // namespace
