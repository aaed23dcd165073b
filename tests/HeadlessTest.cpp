#include "Harness.h"

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
class HeadlessTest : public testing::Test {
protected:
    HeadlessTest() {
        QDir(Folder.path()).mkdir(u"home"_qs);
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                 "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
            Environment.insert(QLatin1StringView(name), Path("home"));
        }
    }

    QString Path(const char* name) { return Folder.filePath(QString::fromUtf8(name)); }

    void Document(const std::vector<Sketch>& compilers, const char* name = "doc.tvq") {
        StoreBytes(Path(name), DocumentImage(compilers, {{"EMPTY", {""}}}));
    }

    Call Run(const QStringList& arguments = {u"doc.tvq"_qs}) {
        return Start(QStringLiteral(RIVENFALL_PROGRAMS "/rivenfall-run"), arguments);
    }

    Call Start(const QString& program, const QStringList& arguments) {
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

TEST_F(HeadlessTest, TheExitStatusTellsHowItWent) {
    Document({Off({"true"})}, "off.tvq");
    StoreBytes(Path("broken.tvq"), "\xA1");
    const struct {
        QStringList Arguments;
        int Status;
        std::string Output, Error;
    } cases[] = {{{}, 2, "", "Usage: rivenfall-run DOCUMENT\n"},
                 {{u"off.tvq"_qs, u"x"_qs}, 2, "", "Usage: rivenfall-run DOCUMENT\n"},
                 {{u"none.tvq"_qs},
                  2,
                  "",
                  "The file " + Path("none.tvq").toStdString() +
                      " can't be opened: No such file or directory.\n"},
                 {{u"broken.tvq"_qs},
                  2,
                  "",
                  "The file " + Path("broken.tvq").toStdString() +
                      " can't be opened: the data ends too early.\n"},
                 {{u"off.tvq"_qs},
                  1,
                  FrameOf(u"No compilers to run!"_qs, "Please select some..."),
                  "No compilers to run!\nPlease select some...\n"}};
    for (const auto& call : cases) {
        const Call result = Run(call.Arguments);
        EXPECT_EQ(result.Status, call.Status);
        EXPECT_EQ(result.Output, call.Output);
        EXPECT_EQ(result.Error, call.Error);
    }
    for (const char* name : {"", "-platform", "--help", "."}) {
        const Call result = Run({QString::fromUtf8(name)});
        EXPECT_EQ(result.Status, 2) << name;
        EXPECT_NE(result.Error, "") << name;
    }
}

TEST_F(HeadlessTest, PrintsTheLogAsItGrows) {
    Document({{"false"}, Shell(u"echo one; echo two >&2"_qs), {"nosuch", {"x"}}}, "жук doc.tvq");
    const Call result = Run({QString::fromUtf8("жук doc.tvq")});
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Output, FrameOf(u"false"_qs, "success") + "\n" +
                                 FrameOf(u"sh -c \"echo one; echo two >&2\""_qs, "success") +
                                 "one\ntwo\n\n" +
                                 FrameOf(u"nosuch x"_qs, "error: CreateProcess failed (2)"));
    EXPECT_EQ(result.Error, "");
}

TEST_F(HeadlessTest, TextArrivesWholeInAnyEnvironment) {
    const QStringList arguments{u"out"_qs, u"a \"b\"\t\\"_qs, u"${EMPTY}"_qs, u"1\n2"_qs,
                                QString::fromUtf8("漢字 😀")};
    // Line breaks and characters lie across the ends of the chunks in which output is read.
    const QByteArray text = QByteArray(63, 'a') + "\r\n" + QByteArray(62, 'b') + "漢\r";
    StoreBytes(Path("text"), text);
    Document({Shell(u"printf '%s\\0' \"$@\" >\"$0\""_qs, arguments), {"cat", {"text"}}});
    Environment.insert(u"LC_ALL"_qs, u"C"_qs);
    for (int pass = 0; pass < 2; ++pass) {
        const Call result = Run();
        EXPECT_EQ(result.Status, 0);
        EXPECT_EQ(result.Error, "");
        EXPECT_EQ(result.Output.substr(result.Output.rfind("-\n") + 2),
                  (QByteArray(63, 'a') + "\n" + QByteArray(62, 'b') + "漢\r").toStdString());
        EXPECT_EQ(BytesOf(Path("out")), QByteArray("a \"b\"\t\\\0\0"
                                                   "1\n2\0",
                                                   15) +
                                            "漢字 😀" + '\0');
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

TEST_F(HeadlessTest, RunsWithoutStandardStreams) {
    Document({Shell(u"ls /proc/$$/fd >out; echo x"_qs)});
    const Call result =
        Start(u"sh"_qs, {u"-c"_qs, QStringLiteral("exec " RIVENFALL_PROGRAMS
                                                  "/rivenfall-run doc.tvq <&- >&- 2>&-")});
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(BytesOf(Path("out")), "0\n1\n2\n");
}

} // namespace
