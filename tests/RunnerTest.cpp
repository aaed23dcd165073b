#include "CoreHarness.h"

#include <QDir>
#include <QProcess>

using namespace rivenfall;

namespace {

/// What one call of the program came to.
struct Call {
    int Status;
    std::string Output;
    std::string Error;
};

/// A test of the program without a screen, in a folder and with a home of its own.
class RunnerTest : public testing::Test {
protected:
    RunnerTest() {
        QDir(Folder.path()).mkdir(u"home"_s);
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                 "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
            Environment.insert(QLatin1StringView(name), Path("home"));
        }
    }

    QString Path(const char* name) { return Folder.filePath(QString::fromUtf8(name)); }

    void Document(const std::vector<Sketch>& compilers, const char* name = "doc.tvq") {
        StoreBytes(Path(name), DocumentImage(compilers, Sketches("EMPTY(~)")));
    }

    Call Run(const QStringList& arguments = {u"doc.tvq"_s}) {
        return Start(ProgramFolder() + u"/rivenfall-run"_s, arguments);
    }

    Call Start(const QString& program, const QStringList& arguments) {
        const AwaitedChildren children;
        QProcess process;
        process.setWorkingDirectory(Folder.path());
        process.setProcessEnvironment(Environment);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
                process.readAllStandardError().toStdString()};
    }

    static std::string FrameOf(const QString& issue, const char* result) {
        return Frame(issue, QLatin1StringView(result)).remove(u'\r').toStdString();
    }

    QTemporaryDir Folder;
    QProcessEnvironment Environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(RunnerTest, TheExitStatusTellsHowItWent) {
    Document(Sketches("!true"), "off.tvq");
    StoreBytes(Path("broken.tvq"), "\xA1");
    const std::string usage = "Usage: rivenfall-run DOCUMENT\n";
    const auto broken = [this](const char* name, const char* reason) {
        return "The file " + Path(name).toStdString() + " can't be opened: " + reason + ".\n";
    };
    // Arguments, exit status and standard error.
    const std::tuple<const char*, int, std::string> cases[] = {
        {"off.tvq x", 2, usage},
        {"none.tvq", 2, broken("none.tvq", "No such file or directory")},
        {"broken.tvq", 2, broken("broken.tvq", "the data ends too early")},
        {"off.tvq", 1, "No compilers to run!\nPlease select some...\n"}};
    for (const auto& [arguments, status, error] : cases) {
        const Call result = Run(QString::fromUtf8(arguments).split(u' '));
        EXPECT_EQ(result.Status, status);
        EXPECT_EQ(result.Output,
                  status == 2 ? "" : FrameOf(u"No compilers to run!"_s, "Please select some..."));
        EXPECT_EQ(result.Error, error);
    }
    EXPECT_EQ(Run(QStringList()).Error, usage);
    for (const char* name : {"", "-platform", "--help", "."}) {
        const Call result = Run({QString::fromUtf8(name)});
        EXPECT_EQ(result.Status, 2) << name;
        EXPECT_NE(result.Error, "") << name;
    }
}

TEST_F(RunnerTest, TextArrivesWholeInAnyEnvironment) {
    const QStringList arguments{u"out"_s, u"a \"b\"\t\\"_s, u"${EMPTY}"_s, u"1\n2"_s,
                                QString::fromUtf8("漢字 😀")};
    const QByteArray expected =
        arguments.sliced(1).join(QChar::Null).replace(u"${EMPTY}"_s, QString()).toUtf8() + '\0';
    // What a child writes passes as it is, also what is no text.
    const QByteArray text = QByteArray("a\r\n\0b\r", 6) + "漢\xFF\xE6\r";
    StoreBytes(Path("text"), text);
    Document({Shell(u"printf '%s\\0' \"$@\" >\"$0\""_s, arguments), {"cat", {"text"}}});
    Environment.insert(u"LC_ALL"_s, u"C"_s);
    for (int pass = 0; pass < 2; ++pass) {
        const Call result = Run();
        EXPECT_EQ(result.Status, 0);
        EXPECT_EQ(result.Error, "");
        EXPECT_EQ(result.Output.substr(result.Output.rfind("-\n") + 2), text.toStdString());
        EXPECT_EQ(BytesOf(Path("out")), expected);
        EXPECT_EQ(
            QDir(Path("home")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList());
        for (const char* name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"}) {
            Environment.remove(QLatin1StringView(name));
        }
    }
    EXPECT_EQ(QDir(Folder.path()).entryList(QDir::Files | QDir::Hidden).join(u' ').toStdString(),
              "doc.tvq out text");
}

TEST_F(RunnerTest, APathLeadsWhereTheKernelTakesIt) {
    QDir(Folder.path()).mkpath(u"far/off"_s);
    ASSERT_TRUE(QFile::link(u"far/off"_s, Path("link")));
    // The other one stands where the path would lead as a text.
    Document({{"touch", {"wrong"}}});
    Document({{"touch", {"right"}}}, "far/doc.tvq");
    EXPECT_EQ(Run({u"link/../doc.tvq"_s}).Status, 0);
    EXPECT_TRUE(QFile::exists(Path("right")) && !QFile::exists(Path("wrong")));

    // The same for a name that isn't UTF-8, and one that begins with a byte order mark.
    Document({{"touch", {"wrong"}}}, "\uFFFD.tvq");
    Document({{"touch", {"marked"}}}, "./\uFEFF.tvq");
    const QString call = u"exec \"$0\" \"$(printf '%1.tvq')\""_s;
    const QString program = ProgramFolder() + u"/rivenfall-run"_s;
    const Call refused = Start(u"sh"_s, {u"-c"_s, call.arg(u"\\377"_s), program});
    EXPECT_EQ(refused.Status, 2);
    EXPECT_NE(refused.Error.find("its path has bytes that are no UTF-8"), std::string::npos);
    EXPECT_EQ(Start(u"sh"_s, {u"-c"_s, call.arg(u"\\357\\273\\277"_s), program}).Status, 0);
    EXPECT_TRUE(QFile::exists(Path("marked")) && !QFile::exists(Path("wrong")));
}

TEST_F(RunnerTest, RunsWithoutStandardStreams) {
    Document({Shell(u"exec >out; ls /proc/$$/fd"_s)});
    const Call result = Start(u"sh"_s, {u"-c"_s, u"exec \"$0\" doc.tvq <&- >&- 2>&-"_s,
                                        ProgramFolder() + u"/rivenfall-run"_s});
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(BytesOf(Path("out")), "0\n1\n2\n");
}

} // namespace
