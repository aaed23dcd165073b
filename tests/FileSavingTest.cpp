#include "CoreHarness.h"
#include "FailingCalls.h"

#include "files/FileError.h"
#include "files/FileSaving.h"
#include "files/OpenFile.h"

#include <QDir>

#include <grp.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace rivenfall;

namespace {

const QByteArray Former(5000, 'f');
const QByteArray Longer(9000, 'n');
const char* const AccessName = "system.posix_acl_access";

/// The owner and the user 1000 write, all others read; the mode says that the group writes.
const QByteArray AccessList = QByteArray::fromHex("0200000001000600ffffffff02000600e8030000"
                                                  "04000400ffffffff10000600ffffffff"
                                                  "20000400ffffffff");

class FileSavingTest : public testing::Test {
protected:
    void SetUp() override { Empty(); }
    void TearDown() override {
        Empty();
        umask(FormerMask);
    }

    QByteArray Path(const QByteArray& name) const { return (Inside.path() + u'/').toUtf8() + name; }
    QByteArray Bytes(const char* name) const { return BytesOf(QString::fromUtf8(Path(name))); }

    /// Makes the folder anew, for everybody.
    void Empty() {
        chmod(Folder.path().toUtf8(), 0755);
        chmod(Inside.path().toUtf8(), 0777);
        Inside.removeRecursively();
        Inside.mkpath(u"."_s);
        chmod(Inside.path().toUtf8(), 0777);
    }

    struct stat Status(const QByteArray& name) const {
        struct stat status;
        EXPECT_EQ(lstat(Path(name), &status), 0);
        return status;
    }

    void Store(const QByteArray& name, mode_t mode) {
        StoreBytes(QString::fromUtf8(Path(name)), Former);
        EXPECT_EQ(chmod(Path(name), mode), 0);
    }

    /// Gives the entry an attribute, where the file system has such.
    void Set(const char* name, const char* attribute, const QByteArray& value) {
        setxattr(Path(name), attribute, value, static_cast<size_t>(value.size()), 0);
    }

    /// The reason why @p bytes can't be saved; empty if they were.
    std::string Save(const QByteArray& name, const QByteArray& bytes = Longer) {
        try {
            SaveFile(QString::fromUtf8(Path(name)), bytes);
            return {};
        } catch (const FileError& error) {
            return error.Reason.toStdString();
        }
    }

    /// Saves as one who may not do everything, of the group 2000 if the tester is root.
    void SaveUnprivileged(const char* name) {
        const AwaitedChildren children;
        const gid_t group = 2000;
        EXPECT_EXIT(
            {
                if (geteuid() == 0 &&
                    (setgroups(1, &group) != 0 || setgid(1234) != 0 || setuid(1234) != 0)) {
                    std::_Exit(2);
                }
                std::fputs(Save(name).c_str(), stderr);
                std::_Exit(0);
            },
            testing::ExitedWithCode(0), "^$");
        EXPECT_EQ(Bytes(name), Longer);
    }

    /// What the folder holds: of each entry what it is and who may use it. What @p told names is
    /// left out.
    std::string Entries(const std::string& told = {}) const {
        QString text;
        for (const QString& name : Inside.entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                    QDir::NoDotAndDotDot)) {
            if (told.find(name.toStdString()) != std::string::npos) {
                continue;
            }
            const struct stat status = Status(name.toUtf8());
            text += name;
            for (const unsigned number : {status.st_mode, status.st_uid, status.st_gid}) {
                text += u' ' + QString::number(number, 8);
            }
            for (const char* attribute : {AccessName, "user.origin"}) {
                char value[100];
                const ssize_t length = lgetxattr(Path(name.toUtf8()), attribute, value, 100);
                text += u' ' + QString::fromLatin1(QByteArray(value, std::max(length, 0L)).toHex());
            }
            text += u'\n';
        }
        return text.toStdString();
    }

    /// The name of the file that a save has left behind; empty if there is none.
    QByteArray Leftover() const {
        return Inside.entryList({u".rivenfall-*"_s}, QDir::Files | QDir::Hidden)
            .join(u' ')
            .toUtf8();
    }

    const mode_t FormerMask = umask(022);
    QTemporaryDir Folder;
    QDir Inside{Folder.filePath(u"inside"_s)};
};

/// A save whose calls fail, one after the other.
class FailingSaveTest : public FileSavingTest {
protected:
    /// Saves where the call @p number fails with @p error, and with @p lasting all behind it.
    std::string SaveWhereFails(int number, int error, bool lasting = false) {
        Failed.clear();
        Calls.clear();
        const FailingCalls failing([&](const std::string& name) {
            if (name == "O_TMPFILE" && !Unnamed) {
                return ENOTSUP;
            }
            Calls += name + ' ';
            --number;
            const bool fails = number == 0 || (number < 0 && lasting);
            Failed = fails && Failed.empty() ? name : Failed;
            return fails ? error : 0;
        });
        return Save("doc", ToSave);
    }

    void Prepare(const std::string& place) {
        Empty();
        if (place != "new") {
            Store("doc", 0640);
        }
        if (place == "replaced") {
            Set("doc", "user.origin", "here");
            Set("doc", AccessName, AccessList);
            EXPECT_TRUE(geteuid() != 0 || chown(Path("doc"), 1234, 2000) == 0);
        } else if (place == "written over") {
            EXPECT_EQ(link(Path("doc"), Path("other")), 0);
        }
    }

    /// Lets each call of a save fail in turn: it is told, and costs nothing but what is told.
    void FailEachCall(const std::string& place, int error, bool lasting = false) {
        Prepare(place);
        const std::string before = Entries();
        EXPECT_EQ(SaveWhereFails(0, 0), "");
        const std::string saved = Entries();
        EXPECT_EQ(Leftover(), "");
        for (int number = 1;; ++number) {
            Prepare(place);
            const std::string told = SaveWhereFails(number, error, lasting);
            if (Failed.empty()) {
                return;
            }
            SCOPED_TRACE(testing::Message() << place << ": " << Failed << " gives "
                                            << std::strerror(error) << ": " << told);
            EXPECT_TRUE(!told.empty() || error != EIO);
            if (told.find("can't be put back") != std::string::npos) {
                EXPECT_TRUE(Leftover().isEmpty() || Bytes(Leftover()) == ToSave);
                continue;
            }
            const bool written = told.empty() || told.rfind("it is written", 0) == 0;
            EXPECT_EQ(Entries(told), written ? saved : before);
            EXPECT_TRUE(Entries(told).empty() || Bytes("doc") == (written ? ToSave : Former));
            if (Failed == "pwrite" && !Leftover().isEmpty() && place != "new") {
                EXPECT_EQ(Status(Leftover()).st_mode & 077, 0u)
                    << "others may read what is written";
            }
        }
    }

    bool Unnamed = true;
    QByteArray ToSave = Longer;
    std::string Failed, Calls;
};

TEST_F(FailingSaveTest, ACallThatFailsIsToldAndCostsNothing) {
    for (const int error : {EIO, EACCES, EINTR}) {
        for (const char* place : {"new", "replaced", "written over"}) {
            FailEachCall(place, error);
        }
    }
    FailEachCall("written over", EIO, true);
    Unnamed = false;
    FailEachCall("replaced", EIO, true);
    ToSave = "short";
    FailEachCall("written over", EIO);
}

TEST_F(FailingSaveTest, TheBytesAreOnTheDiskBeforeTheNameIs) {
    Prepare("replaced");
    EXPECT_EQ(SaveWhereFails(0, 0), "");
    EXPECT_LT(Calls.rfind("pwrite"), Calls.find("fsync"));
    EXPECT_LT(Calls.find("fsync"), Calls.find("renameat"));
    EXPECT_LT(Calls.find("renameat"), Calls.rfind("fsync"));
}

TEST_F(FileSavingTest, LinksAndRightsStay) {
    umask(027);
    EXPECT_EQ(Save("new"), "");
    EXPECT_EQ(Entries().substr(0, 10), "new 100640");
    Empty();
    Inside.mkdir(u"folder"_s);
    const QByteArray longName = "folder/" + QByteArray(255, 'n');
    EXPECT_EQ(symlink(longName, Path("link")), 0);
    EXPECT_EQ(symlink("link", Path("chain")), 0);
    for (int pass = 0; pass < 2; ++pass) {
        // First to nowhere: then the file is made there.
        EXPECT_EQ(Save("chain"), "");
        EXPECT_EQ(Bytes(longName), Longer);
        EXPECT_EQ(Inside.entryList(QDir::Files | QDir::Hidden).size(), 2);
        EXPECT_TRUE(QFileInfo(Inside, u"chain"_s).isSymLink());
        Store(longName, 0600);
    }
    // With a list of its own, and in a folder that hands one down.
    for (const mode_t mode : {0600u, 0664u, 04755u, 02644u}) {
        Empty();
        Store("doc", 0600);
        EXPECT_TRUE(geteuid() != 0 || chown(Path("doc"), 1234, 2000) == 0);
        EXPECT_EQ(chmod(Path("doc"), mode), 0);
        Set("doc", "user.origin", "here");
        Set(mode == 0664u ? "doc" : ".", mode == 0664u ? AccessName : "system.posix_acl_default",
            AccessList);
        const std::string entries = Entries();
        const ino_t number = Status("doc").st_ino;
        EXPECT_EQ(Save("doc"), "");
        EXPECT_EQ(Entries(), entries);
        EXPECT_EQ(Bytes("doc"), Longer);
        EXPECT_NE(Status("doc").st_ino, number) << "it was written over";
    }
}

TEST_F(FileSavingTest, WhereNoOtherFileCanBeTheSameTheBytesAreWrittenOver) {
    Store("doc", 0666);
    EXPECT_EQ(link(Path("doc"), Path("other")), 0);
    EXPECT_EQ(Save("doc"), "");
    EXPECT_EQ(Bytes("other"), Longer);
    // In a folder that takes no new file, of another owner, and both.
    for (const mode_t folder : {0555u, 0777u, 01777u}) {
        Empty();
        Store("doc", 0664);
        if (geteuid() == 0) {
            EXPECT_EQ(chown(Path("doc"), 0, 2000), 0);
        }
        EXPECT_EQ(chmod(Path("."), folder), 0);
        const std::string entries = Entries();
        SaveUnprivileged("doc");
        EXPECT_EQ(Entries(), entries) << folder;
    }
}

TEST_F(FileSavingTest, WhatIsNoOrdinaryFileStays) {
    Store("doc", 0644);
    Inside.mkdir(u"folder"_s);
    EXPECT_EQ(mkfifo(Path("pipe"), 0666), 0);
    EXPECT_EQ(symlink("pipe", Path("link to a pipe")), 0);
    EXPECT_EQ(symlink("loop", Path("loop")), 0);
    const std::string entries = Entries();
    for (const char* name : {"link to a pipe", "loop", "doc/doc", "none/doc", "none/"}) {
        EXPECT_NE(Save(name), "") << name;
    }
    EXPECT_EQ(Save("pipe"), "it is no ordinary file");
    EXPECT_EQ(Save("folder"), "it is a folder");
    EXPECT_EQ(Entries(), entries);
}

TEST_F(FileSavingTest, WhatIsOpenedIsWhatWasLookedAt) {
    for (const mode_t kind : {mode_t{S_IFREG}, mode_t{S_IFIFO}}) {
        Store("doc", 0644);
        EXPECT_EQ(mknod(Path("other"), kind | 0666, 0), 0);
        std::string calls;
        const FailingCalls swapping([&](const std::string& name) {
            calls += name + ' ';
            return calls == "openat fstat openat " ? rename(Path("other"), Path("doc")) : 0;
        });
        const auto open = [this] { OpenOrdinary(AT_FDCWD, Path("doc"), O_RDONLY); };
        if (kind == S_IFREG) {
            open();
        } else {
            EXPECT_THROW(open(), FileError);
        }
        EXPECT_EQ(calls.find("openat fstat openat fstat openat fstat"), 0u);
    }
}

TEST_F(FileSavingTest, NoLinkOfAnotherIsFollowedWhereAllMayWrite) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes links of another owner";
    }
    Store("private", 0600);
    EXPECT_EQ(symlink("private", Path("doc")), 0);
    EXPECT_EQ(chmod(Path("."), 01777), 0);
    EXPECT_EQ(Save("doc"), "");
    EXPECT_EQ(lchown(Path("doc"), 1234, 1234), 0);
    EXPECT_EQ(Save("doc", "trap"), "Permission denied");
    EXPECT_EQ(Bytes("private"), Longer);
}

} // namespace
