#include "WindowDriver.h"

#include "run/desktop/ExpandVariables.h"
#include "support/Title.h"
#include "system/CommandLine.h"

#include <QDir>
#include <QTimer>

#include <cstring>
#include <sys/wait.h>

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
    const QByteArray formerPath = qgetenv("PATH");
    for (const char* name : {"build.exe", "pack.exe", "check.exe"}) {
        const QString program =
            StoreBytes(Path(QLatin1StringView(name)), "#!/bin/sh\necho \"$# $* in ${PWD##*/}\"\n");
        QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner);
    }
    qputenv("PATH", Folder.path().toUtf8() + ':' + formerPath);
    QDir(Folder.path()).mkdir(u"C:\\work"_s);
    QDir::setCurrent(Folder.path());
    Open(Sketches(
             "build.exe(-fast,-include(${LIB},!extra.lib),!-trace(full),~(${FILE1})),CD(${DIR}),"
             "!pack.exe(-small),check.exe(${file1}),check.exe(${NOPE}(!x,a b,~)),~(x),cdx"),
         "LIB(base.lib,old.lib),FILE1(input1),DIR(C:\\work)");
    EXPECT_EQ(ExpandVariables(u"${lib}${NOPE}"_s), u"base.lib"_s);
    Runner().Echo(u"of a run before"_s);
    Program().Run();
    qputenv("PATH", formerPath);
    EXPECT_EQ(Log(),
              Frame(u"build.exe -fast -include base.lib input1"_s, Success) +
                  u"4 -fast -include base.lib input1 in "_s + QFileInfo(Folder.path()).fileName() +
                  u"\n"_s + Break + Frame(u"cd C:\\work"_s, Success) + Break +
                  Frame(u"check.exe input1"_s, Success) + u"1 input1 in C:\\work\n"_s + Break +
                  Frame(u"check.exe \"\" \"a b\""_s, Success) + u"2  a b in C:\\work\n"_s + Break +
                  Frame(u"\"\" x"_s, NotFound) + Break + Frame(u"cdx"_s, NotFound));
    EXPECT_EQ(Runner().Output(), QString());
}

TEST_F(RunTest, ChangesDirectoryStepByStep) {
    QDir(Folder.path()).mkpath(u"a b/c"_s);
    const QString base = QDir(Folder.path()).canonicalPath();
    Open(Sketches("Cd(${BASE}),cd(a b),${X}(c),cD(none),cd,pwd"), "X(CD),BASE(~)");
    Program().Variables()->Item(2)->Childs()->Item(1)->SetValue(base);
    Program().Run();
    const QString failure = u"error "_s + QString::fromLocal8Bit(std::strerror(ENOENT));
    EXPECT_EQ(Log(), Frame(u"cd "_s + base, Success) + Break + Frame(u"cd \"a b\""_s, Success) +
                         Break + Frame(u"cd c"_s, Success) + Break + Frame(u"cd none"_s, failure) +
                         Break + Frame(u"cd "_s, failure) + Break + Frame(u"pwd"_s, Success) +
                         base + u"/a b/c\n"_s);
    EXPECT_EQ(QDir::currentPath(), base + u"/a b/c"_s);
}

TEST_F(RunTest, ASecondRunWaitsForTheFirst) {
    Open({{"rivenfall-no-such-program"}, Shell(u"sleep 0.5; echo late"_s), {"echo", {"outer"}}});
    QTimer::singleShot(350, &Window(), [this] {
        EXPECT_TRUE(Runner().Running());
        Program().Compilers()->Clear();
        Program().Compilers()->Add(u"inner1"_s);
        Program().Compilers()->Add(u"echo"_s)->Childs()->Add(u"inner2"_s);
        Program().Run();
    });
    Program().Run();
    EXPECT_EQ(Log(), Frame(u"inner1"_s, NotFound) + u"late\n"_s + Break +
                         Frame(u"echo inner2"_s, Success) + u"inner2\n"_s + Break +
                         Frame(u"echo outer"_s, Success) + u"outer\n"_s);
    EXPECT_EQ(TheUser.Asked.join(u'/').toStdString(),
              "Still running!|48|" + ProgramTitle().toStdString());
}

TEST_F(RunTest, ATickDeliversAtMost64Bytes) {
    const QString path = Path(u"out"_s);
    StoreBytes(path, QByteArray(130, 'x'));
    EXPECT_EQ(Execute({u"cat"_s, path}), QString(130, u'x'));
    EXPECT_EQ(Chunks, (QList<int>{64, 64, 2}));
    // Characters lie across the ends of chunks, and so does what is none and costs nothing else.
    StoreBytes(path, QByteArray(63, 'a') + "ж" + QByteArray(62, 'b') + "漢" + QByteArray(62, 'c') +
                         "😀" + QByteArray(60, 'd') + "\xFF\xE9t\xC3(\xE6\xBCx\xE6");
    EXPECT_EQ(Execute({u"cat"_s, path}), QString(63, u'a') + u"ж"_s + QString(62, u'b') + u"漢"_s +
                                             QString(62, u'c') + u"😀"_s + QString(60, u'd') +
                                             u"\uFFFD\uFFFDt\uFFFD(\uFFFD\uFFFDx\uFFFD"_s);
    EXPECT_TRUE(Log().endsWith(u"x\uFFFD"_s));
}

TEST_F(RunTest, ASilentChildHoldsNothingUp) {
    int beats = 0;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, &heart, [&beats] { ++beats; });
    heart.start(10);
    EXPECT_EQ(Execute({u"sleep"_s, u"0.6"_s}), QString());
    EXPECT_GT(beats, 20);
    // A grandchild that holds the output counts as the child.
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(Execute({u"sh"_s, u"-c"_s, u"(sleep 0.6; echo late) & echo started"_s}).toStdString(),
              "started\nlate\n");
    EXPECT_GE(clock.elapsed(), 600);
    // A child that lets go of its output doesn't.
    clock.restart();
    Execute({u"sh"_s, u"-c"_s, u"exec >&- 2>&-; sleep 3"_s});
    EXPECT_LT(clock.elapsed(), 2000);
}

TEST_F(RunTest, LeavesNoDescriptorAndNoZombie) {
    Execute({u"true"_s});
    const int before = OpenDescriptors();
    EXPECT_FALSE(Runner().Execute(u"rivenfall-no-such-program"_s));
    EXPECT_EQ(OpenDescriptors(), before);
    Execute({u"true"_s});
    EXPECT_EQ(OpenDescriptors(), before);
    EXPECT_LE(waitpid(-1, nullptr, WNOHANG), 0) << "a zombie is left";
}

TEST_F(RunTest, TheWindowIsShownByFramesOnly) {
    const QString title = u"[Output] - "_s + ProgramTitle();
    QWidget* window = Runner().Log().Widget()->window();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), title);
    EXPECT_TRUE(Runner().Execute(u"sh -c \"sleep 0.2; echo x\""_s));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), u"New File - "_s + title);
    window->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Runner().Running(); }, 10000));
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(Log().endsWith(u"x\n"_s));
    Open(Sketches("true"));
    Runner().Clear();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Runner().Output().toStdString(), "x\n");
    Runner().Echo(QString(200, u'i') + u"\r\nsecond line"_s);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), u"doc.tvq - "_s + title);
    EXPECT_EQ(Log(), Frame(QString(200, u'i') + u"\r\nsecond line"_s, {}).remove(u"# | []\r\n"_s));
}

} // namespace
