#include "CoreHarness.h"
#include "FailingCalls.h"

#include "files/FileError.h"
#include "files/FileSaving.h"

#include <QDir>

#include <grp.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
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

    /// What the folder holds: of each entry what it is and who may use it.
    std::string Entries() const {
        QString text;
        for (const QString& name : Inside.entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                    QDir::NoDotAndDotDot)) {
            const struct stat status = Status(name.toUtf8());
            const unsigned numbers[] = {status.st_mode, status.st_uid, status.st_gid};
            text += name;
            for (const unsigned number : numbers) {
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

    const mode_t FormerMask = umask(022);
    QTemporaryDir Folder;
    QDir Inside{Folder.filePath(u"inside"_s)};
};

TEST_F(FileSavingTest, ACallThatFailsIsToldAndCostsNothing) {
    const auto linked = [this] {
        Store("doc", 0640);
        EXPECT_EQ(link(Path("doc"), Path("other")), 0);
    };
    const std::tuple<const char*, QByteArray, std::function<void()>> cases[] = {
        {"new", Longer, [] {}},
        {"replaced", Longer,
         [this] {
             Store("doc", 0640);
             Set("doc", "user.origin", "here");
             Set("doc", AccessName, AccessList);
             EXPECT_TRUE(geteuid() != 0 || chown(Path("doc"), 1234, 2000) == 0);
         }},
        {"behind a link", Longer,
         [this] {
             Store("other", 0640);
             EXPECT_EQ(symlink("other", Path("doc")), 0);
         }},
        {"written over", Longer, linked},
        {"written over and cut off", "short", linked}};
    // What isn't allowed, isn't known or was interrupted may be done in another way.
    const std::pair<int, bool> errors[] = {{EIO, true},     {ENOSPC, true},  {EDQUOT, true},
                                           {EACCES, false}, {EINVAL, false}, {EINTR, false}};
    for (const auto& [place, bytes, prepare] : cases) {
        for (const auto& [error, mustBeTold] : errors) {
            std::string failed = "none yet";
            for (int number = 1; !failed.empty(); ++number) {
                Empty();
                prepare();
                const std::string entries = Entries();
                std::string reason, calls;
                {
                    const FailingCalls failing(number, error);
                    reason = Save("doc", bytes);
                    failed = failing.First();
                    calls = failing.Calls();
                }
                SCOPED_TRACE(place + (": " + failed) + " gives " + std::strerror(error));
                EXPECT_TRUE(reason.empty() ? failed.empty() || !mustBeTold : !failed.empty());
                if (failed.empty()) {
                    // The bytes are on the disk before the name is, and then nothing is left to do.
                    EXPECT_LT(calls.find("fsync"), calls.find("rename"));
                    EXPECT_GT(calls.rfind("fsync") + 1, calls.rfind("rename") + 1);
                    EXPECT_GT(calls.rfind("fsync"), calls.rfind("pwrite"));
                }
                if (!entries.empty() || !reason.empty()) {
                    EXPECT_EQ(Entries(), entries);
                }
                if (!entries.empty() || reason.empty()) {
                    EXPECT_EQ(Bytes("doc"), reason.empty() ? bytes : Former);
                }
            }
        }
    }
}

TEST_F(FileSavingTest, WhereNothingWorksAnyMoreTheReasonTellsWhatIsLeft) {
    for (const bool replaced : {true, false}) {
        std::string failed = "none yet", told;
        for (int number = 1; !failed.empty(); ++number) {
            Empty();
            Store("doc", 0640);
            EXPECT_TRUE(replaced || link(Path("doc"), Path("other")) == 0);
            {
                const FailingCalls failing(number, EIO, true);
                told = Save("doc");
                failed = failing.First();
            }
            EXPECT_EQ(told.empty(), failed.empty());
            if (failed.empty() || Bytes("doc") == Former) {
                continue;
            }
            const QString file =
                QString::fromStdString(told).section(u" file "_s, 1).section(u' ', 0, 0);
            EXPECT_EQ(Bytes(file.toUtf8()), replaced ? Former : Longer) << failed << ": " << told;
        }
    }
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
    for (const bool handedDown : {false, true}) {
        for (const mode_t mode : {0600u, 0664u, 0640u, 0755u, 04755u, 02644u}) {
            for (const bool listed : {false, true}) {
                Empty();
                Store("doc", 0600);
                if (geteuid() == 0) {
                    EXPECT_EQ(chown(Path("doc"), 1234, 2000), 0);
                }
                EXPECT_EQ(chmod(Path("doc"), mode), 0);
                Set("doc", "user.origin", "here");
                if (listed) {
                    Set("doc", AccessName, AccessList);
                }
                if (handedDown) {
                    Set(".", "system.posix_acl_default", AccessList);
                }
                const std::string entries = Entries();
                const ino_t number = Status("doc").st_ino;
                EXPECT_EQ(Save("doc"), "");
                EXPECT_EQ(Entries(), entries);
                EXPECT_EQ(Bytes("doc"), Longer);
                EXPECT_NE(Status("doc").st_ino, number) << "it was written over";
            }
        }
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
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes files of another owner";
    }
}

TEST_F(FileSavingTest, WhatIsNoOrdinaryFileStays) {
    Store("doc", 0644);
    Inside.mkdir(u"folder"_s);
    EXPECT_EQ(mkfifo(Path("pipe"), 0666), 0);
    EXPECT_EQ(symlink("pipe", Path("link to a pipe")), 0);
    EXPECT_EQ(symlink("loop", Path("loop")), 0);
    QList<QByteArray> names{"folder",  "pipe",     "link to a pipe", "loop",
                            "doc/doc", "none/doc", "none/"};
    // The device "full", in the tester's own folder.
    if (mknod(Path("device"), S_IFCHR | 0666, makedev(1, 7)) == 0) {
        names += "device";
    }
    const std::string entries = Entries();
    for (const QByteArray& name : names) {
        EXPECT_NE(Save(name), "") << name.constData();
        EXPECT_EQ(Entries(), entries);
    }
    EXPECT_EQ(Save("pipe"), "it is no ordinary file");
    EXPECT_EQ(Save("folder"), "it is a folder");
}

} // namespace
