#include "Harness.h"

#include "support/Title.h"

#include <QDir>
#include <QProcess>

#include <csignal>
#include <cstdlib>

using namespace rivenfall;

namespace {

/// Lets this process wait for its children while it lives; the program has them go unasked. What
/// Qt has set up to hear of them, which it does only once, is there again for the next one.
struct AwaitedChildren {
    AwaitedChildren() { sigaction(SIGCHLD, &Own, &Former); }
    ~AwaitedChildren() { sigaction(SIGCHLD, &Former, &Own); }
    struct sigaction Former;
    static inline struct sigaction Own = {};
};

/// A test that starts the real program in a folder of its own, without a display.
class StartTest : public testing::Test {
protected:
    StartTest() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        environment.remove(u"DISPLAY"_s);
        Process.setProcessEnvironment(environment);
        Process.setWorkingDirectory(Folder.path());
    }

    /// Starts the program, which ends by itself, and gives its status with what it printed.
    std::string Run(const QStringList& arguments) {
        Process.start(QString::fromUtf8(RIVENFALL_PROGRAMS "/rivenfall"), arguments);
        EXPECT_TRUE(Process.waitForFinished(20000));
        return std::to_string(Process.exitCode()) + '|' +
               Process.readAllStandardOutput().toStdString() + '|' +
               Process.readAllStandardError().toStdString();
    }

    /// Starts the program with windows that nobody sees, and presses @p keys in them.
    void Work(const QStringList& arguments, const char* keys) {
        QProcessEnvironment environment = Process.processEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.insert(u"LD_PRELOAD"_s, QString::fromUtf8(RIVENFALL_KEY_PRESSER));
        environment.insert(u"RIVENFALL_KEYS"_s, QString::fromUtf8(keys));
        environment.insert(u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s);
        Process.setProcessEnvironment(environment);
        EXPECT_EQ(Run(arguments).find("0|"), 0) << keys;
        EXPECT_EQ(Process.exitStatus(), QProcess::NormalExit);
    }

    const AwaitedChildren Children;
    QTemporaryDir Folder;
    QProcess Process;
};

TEST_F(StartTest, IsWorkedByKeysAndLeftWithStatusZero) {
    const QByteArray document = DocumentImage(Sketches("cd(sub)"));
    QDir(Folder.path()).mkdir(u"sub"_s);
    for (const QString& name : {u"a b.tvq"_s, u"--help"_s, u"c.tvq"_s}) {
        StoreBytes(Folder.filePath(name), document + "which a save cuts off");
    }
    Work({}, "Alt+F,X");
    Work({u"./--help"_s}, "Alt+F,S,Alt+F,X");
    EXPECT_EQ(BytesOf(Folder.filePath(u"--help"_s)), document);
    // The first one counts. The path that was named is that of the start, wherever a run has gone.
    Work({u"a b.tvq"_s, u"c.tvq"_s}, "Alt+F,R,Alt+F,S,Alt+F,X");
    EXPECT_EQ(BytesOf(Folder.filePath(u"a b.tvq"_s)), document);
    EXPECT_NE(BytesOf(Folder.filePath(u"c.tvq"_s)), document);
    // A run that isn't over goes on.
    const QByteArray running = DocumentImage(Sketches("sleep(0.4),touch(done)"));
    Work({StoreBytes(Folder.filePath(u"r.tvq"_s), running)}, "Alt+F,R,Alt+F,X");
    EXPECT_TRUE(QFile::exists(Folder.filePath(u"done"_s)));
}

TEST_F(StartTest, AnswersWithoutADisplay) {
    EXPECT_EQ(Run({u"--help"_s}).find("0|Usage: rivenfall [DOCUMENT]\n"), 0);
    EXPECT_EQ(Run({u"--version"_s}).find("0|" + ProgramTitle().toStdString() + "\nCopyright "), 0);
    EXPECT_NE(Run({}).find("there is no display"), std::string::npos);
    EXPECT_NE(Run({u"--version"_s, u"x"_s}).find("there is no display"), std::string::npos);
    EXPECT_EQ(Process.exitCode(), EXIT_FAILURE);
}

/// What Qt does where the screen goes away, from inside its reader of events.
TEST(EndTest, AnExitFromInsideTheEventLoopIsClean) {
    const AwaitedChildren children;
    // In a process of its own: a copy of this one would lack the threads that Qt waits for.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto loseTheScreen = [] {
        SetGlobalApplication(std::make_shared<Application>());
        GlobalApplication()->FileNew();
        std::exit(0);
    };
    EXPECT_EXIT(loseTheScreen(), testing::ExitedWithCode(EXIT_FAILURE), "");
}

} // namespace
