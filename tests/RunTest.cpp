#include "WindowDriver.h"

#include "run/desktop/ExpandVariables.h"
#include "support/Title.h"
#include "system/CommandLine.h"
#include "system/Process.h"

#include <QDir>
#include <QTimer>

#include <csignal>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

using namespace rivenfall;

namespace {

const QString Success = u"success"_s;
const QString NotFound = u"error: CreateProcess failed (2)"_s;
const QString Break = u"\r\n"_s;

class RunTest : public ProgramTest {
protected:
    void Open(const std::vector<Sketch>& compilers, const char* variables = "") {
        const QByteArray image = DocumentImage(compilers, Sketches(variables));
        ASSERT_TRUE(Program().FileOpen(StoreBytes(Path(u"doc.tvq"_s), image)));
    }

    /// Executes @p items and gives their output and how the log grew chunk by chunk.
    QString Execute(const QStringList& items) {
        Chunks.clear();
        EXPECT_TRUE(Runner().Execute(JoinCommandLine(items)));
        qsizetype length = 0;
        QObject context;
        QObject::connect(&Runner().Log(), &MultiLineTextBox::Change, &context, [&] {
            Chunks += static_cast<int>(Runner().Output().size() - length);
            length = Runner().Output().size();
        });
        EXPECT_TRUE(QTest::qWaitFor([this] { return !Runner().Running(); }, 10000));
        return Runner().Output();
    }

    QList<int> Chunks;
};

TEST_F(RunTest, CarriesOutTheActiveCompilersInOrder) {
    QDir(Folder.path()).mkpath(u"a b/c"_s);
    const QString base = QDir(Folder.path()).canonicalPath();
    Open(Sketches("echo(-fast,-include(${LIB},!extra.lib),!-trace(full),~(${FILE1})),Cd(${BASE}),"
                  "cd(a b),!echo(off),${X}(c),cD(none),cd,pwd,echo(${NOPE}(!x,a b,~)),~(x),cdx"),
         "LIB(base.lib,old.lib),FILE1(input1),X(CD),BASE(~)");
    Program().Variables()->Item(4)->Childs()->Item(1)->SetValue(base);
    EXPECT_EQ(ExpandVariables(u"${lib}${NOPE}"_s), u"base.lib"_s);
    Runner().Echo(u"of a run before"_s);
    Program().Run();
    const QString failure = u"error "_s + QString::fromLocal8Bit(std::strerror(ENOENT));
    EXPECT_EQ(Log(), Frame(u"echo -fast -include base.lib input1"_s, Success) +
                         u"-fast -include base.lib input1\n"_s + Break +
                         Frame(u"cd "_s + base, Success) + Break + Frame(u"cd \"a b\""_s, Success) +
                         Break + Frame(u"cd c"_s, Success) + Break + Frame(u"cd none"_s, failure) +
                         Break + Frame(u"cd "_s, failure) + Break + Frame(u"pwd"_s, Success) +
                         base + u"/a b/c\n"_s + Break + Frame(u"echo \"\" \"a b\""_s, Success) +
                         u" a b\n"_s + Break + Frame(u"\"\" x"_s, NotFound) + Break +
                         Frame(u"cdx"_s, NotFound));
    EXPECT_EQ(Runner().Output(), QString());
}

TEST_F(RunTest, ASecondRunWaitsForTheFirst) {
    Open({Shell(u"sleep 0.3; echo late"_s), {"echo", {"outer"}}});
    // As soon as the run waits for a child.
    QTimer::singleShot(0, &Window(), [this] {
        EXPECT_TRUE(Runner().Running());
        Program().Compilers()->Clear();
        Program().Compilers()->Add(u"inner1"_s);
        Program().Compilers()->Add(u"echo"_s)->Childs()->Add(u"inner2"_s);
        Program().Compilers()->Item(1)->Move(3);
        Program().Run();
    });
    Program().Run();
    const QString failure = u"error: CreateProcess failed (%1)"_s.arg(LastError());
    EXPECT_EQ(Log(), Frame(u"inner1"_s, failure) + u"late\n"_s + Break +
                         Frame(u"echo inner2"_s, Success) + u"inner2\n"_s + Break +
                         Frame(u"echo outer"_s, Success) + u"outer\n"_s);
    EXPECT_EQ(TheUser.Asked, (QStringList{u"DestinationIndex out of range|48|"_s + ProgramTitle(),
                                          u"Still running!|48|"_s + ProgramTitle()}));
}

TEST_F(RunTest, ATickDeliversAtMost64Bytes) {
    // Characters lie across the ends of chunks, and so does what is none and costs nothing else.
    const QString path =
        StoreBytes(Path(u"out"_s), QByteArray(128, 'x') + QByteArray(63, 'a') + "ж" +
                                       QByteArray(62, 'b') + "漢" + QByteArray(62, 'c') + "😀" +
                                       QByteArray(60, 'd') + "\xFF\xE9t\xC3(\xE6\xBCx\xE6");
    EXPECT_EQ(Execute({u"cat"_s, path}), QString(128, u'x') + QString(63, u'a') + u"ж"_s +
                                             QString(62, u'b') + u"漢"_s + QString(62, u'c') +
                                             u"😀"_s + QString(60, u'd') +
                                             u"\uFFFD\uFFFDt\uFFFD(\uFFFD\uFFFDx\uFFFD"_s);
    EXPECT_EQ(Chunks.first(3), (QList<int>{64, 64, 63}));
    EXPECT_TRUE(Log().endsWith(u"x\uFFFD"_s));
}

TEST_F(RunTest, ASilentChildHoldsNothingUp) {
    // A grandchild that holds the output counts as the child.
    EXPECT_EQ(Execute({u"sh"_s, u"-c"_s, u"(sleep 0.6; echo late) & echo started"_s}).toStdString(),
              "started\nlate\n");
    // A child that lets go of its output doesn't.
    Execute({u"sh"_s, u"-c"_s, u"exec >&- 2>&-; sleep 20"_s});
}

TEST_F(RunTest, LeavesNoDescriptorAndNoZombie) {
    Execute({u"true"_s});
    const QString plain = StoreBytes(Path(u"plain"_s), "#!/bin/sh\n");
    const std::pair<QString, int> cases[] = {{u"rivenfall-no-such-program"_s, ENOENT},
                                             {plain, EACCES},
                                             {plain + u"/x"_s, ENOTDIR},
                                             {u"echo a"_s + QChar::Null + u"b"_s, EINVAL}};
    const auto descriptors = [] { return QDir(u"/proc/self/fd"_s).entryList(); };
    const QStringList before = descriptors();
    for (const auto& [commandLine, error] : cases) {
        EXPECT_FALSE(Runner().Execute(commandLine));
        const QString result = u"error: CreateProcess failed (%1)"_s.arg(error);
        EXPECT_TRUE(Log().endsWith(Frame(commandLine, result)));
    }
    Execute({u"true"_s});
    EXPECT_EQ(descriptors(), before);
    EXPECT_LE(waitpid(-1, nullptr, WNOHANG), 0) << "a zombie is left";
}

TEST_F(RunTest, AChildHasThreeStreamsAndCleanSignals) {
    const auto formerAction = std::signal(SIGUSR2, SIG_IGN);
    const int openWithoutCloseOnExec = dup(STDOUT_FILENO);
    const QString state =
        Execute({u"sh"_s, u"-c"_s,
                 u"ls /proc/$$/fd; timeout 0.2 head -c1; echo $?; echo o1; echo e1 >&2"_s});
    // A shell would change them while it waits.
    const QString ignored = Execute({u"grep"_s, u"SigIgn"_s, u"/proc/self/status"_s});
    close(openWithoutCloseOnExec);
    std::signal(SIGUSR2, formerAction);
    EXPECT_EQ(state.simplified().toStdString(), "0 1 2 124 o1 e1");
    EXPECT_EQ(ignored.toStdString(), "SigIgn:\t0000000000000000\n");
}

TEST_F(RunTest, TheWindowIsShownByFramesOnly) {
    const QString title = u" - [Output] - "_s + ProgramTitle();
    QWidget* window = Runner().Log().Widget()->window();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(Runner().Execute(u"sh -c \"sleep 0.2; echo x\""_s));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), u"New File"_s + title);
    window->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Runner().Running(); }, 10000));
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(Log().endsWith(u"x\n"_s));
    Open(Sketches("true"));
    Runner().Clear();
    EXPECT_FALSE(window->isVisible());
    Runner().Echo(QString(200, u'i') + u"\r\nsecond line"_s);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), u"doc.tvq"_s + title);
    EXPECT_EQ(Log(), Frame(QString(200, u'i') + u"\r\nsecond line"_s, {}).remove(u"# | []\r\n"_s));
}

} // namespace
