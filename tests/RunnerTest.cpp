#include "RunnerHarness.h"

#include <cstring>

using namespace rivenfall;

namespace {

TEST_F(RunnerTest, TheStatusTellsWhyNothingWasDone) {
    Document(Sketches("!true"), "off.tvq");
    StoreBytes(Path("broken.tvq"), "\xA1");
    const auto broken = [this](const char* name, const char* reason) {
        return "The file " + Path(name).toStdString() + " can't be opened: " + reason + ".";
    };
    // Arguments, exit status and the first line on standard error behind the program's name.
    const std::tuple<const char*, int, std::string> cases[] = {
        {"off.tvq", 1, "No compilers to run! Please select some..."},
        {"none.tvq", 2, broken("none.tvq", "No such file or directory")},
        {"broken.tvq", 2, broken("broken.tvq", "the data ends too early")},
        {"-- --help", 2, broken("--help", "No such file or directory")},
        {"../off.tvq -C home -n", 1, "No compilers to run! Please select some..."},
        {"-C nowhere off.tvq", 2,
         "The directory nowhere can't be changed to: No such file or directory."},
        {"off.tvq EMPTY", 2, "The argument EMPTY isn't of the form NAME=VALUE."},
        {"off.tvq EMPTI=x", 2, "No variable of the document has the name EMPTI. There are: EMPTY."},
        {"-x off.tvq", 2, "Unknown option 'x'."},
        {"-ei off.tvq", 2, "The options -e and -i exclude each other."},
        {"-n --print off.tvq", 2, "The options -n and -p exclude each other."},
        {"-p off.tvq A=B", 2, "The option -p shows the document as it is and takes no NAME=VALUE."},
        {"", 2, "The name of a document is missing."}};
    for (const auto& [arguments, status, error] : cases) {
        const Call result = Run(QString::fromUtf8(arguments).split(u' '));
        EXPECT_EQ(result.Status, status) << arguments;
        EXPECT_EQ(result.Output.empty(), status == 2 || std::strstr(arguments, "-n"))
            << result.Output;
        EXPECT_EQ(result.Error.substr(0, result.Error.find('\n')), "rivenfall-run: " + error);
    }
    EXPECT_EQ(Run({u"off.tvq"_s}).Output,
              FrameOf(u"No compilers to run!"_s, "Please select some..."));
    // A name of a file may hold any byte, an argument no other than those of a text.
    EXPECT_EQ(Bash("$RUN $'x\\xE9.tvq'").Error,
              "rivenfall-run: The argument x\uFFFD.tvq is no UTF-8 text.\n");
}

TEST_F(RunnerTest, TellsOfItself) {
    const std::string help = Run({u"--help"_s}).Output;
    EXPECT_TRUE(
        help.starts_with("Usage: rivenfall-run [OPTION]... DOCUMENT [NAME=VALUE]...\nCarry"));
    for (const char* option : {"-C, --directory <DIR>", "-e, --stop-on-error", "-n, --dry-run",
                               "-i, --ignore-errors", "-p, --print", "\nExit status:\n"}) {
        EXPECT_NE(help.find(option), std::string::npos) << option;
    }
    EXPECT_TRUE(Run({u"--version"_s})
                    .Output.starts_with(
                        "rivenfall-run (OMRA Rivenfall Compiler Controller) " RIVENFALL_VERSION
                        "\n"));
    EXPECT_EQ(Bash("$RUN --help >/dev/null && $RUN --version >/dev/full").Status, 3);
}

TEST_F(RunnerTest, FailuresAreToldAndCounted) {
    Document({Shell(u"exit 3"_s),
              "true",
              {"no such", {"a\tb"}},
              Shell(u"kill -KILL $$"_s),
              {"cd", {"gone"}},
              Shell(u": >last"_s)});
    const std::string first = "rivenfall-run: sh -c \"exit 3\": exit status 3\n";
    const std::string all =
        first + R"(rivenfall-run: "no such" "a\tb": can't be started: No such file or directory)"
                "\nrivenfall-run: sh -c \"kill -KILL $$\": ended by SIGKILL\n"
                "rivenfall-run: cd gone: No such file or directory\n"
                "rivenfall-run: 4 of 6 command lines failed\n";
    // An option, the exit status, what is told, and whether the last command is carried out.
    const std::tuple<const char*, int, std::string, bool> cases[] = {
        {"-C.", 3, all, true},
        {"--ignore-errors", 0, all, true},
        {"-e", 3, first + "rivenfall-run: 1 of 6 command lines failed, 5 not carried out\n",
         false}};
    for (const auto& [option, status, error, wentOn] : cases) {
        QFile::remove(Path("last"));
        const Call result = Run({QString::fromUtf8(option), u"doc.tvq"_s});
        EXPECT_EQ(result.Status, status) << option;
        EXPECT_EQ(result.Error, error);
        EXPECT_EQ(Exists("last"), wentOn);
    }
    Document({"true", {"cd", {"home"}}, Shell(u"kill -0 $$"_s)});
    EXPECT_EQ(Run().Status, 0);
}

TEST_F(RunnerTest, ACommandEndsWithItsProgramAndItsOutput) {
    Document({Shell(u"(sleep 0.3; echo late) & exit 4"_s),
              Shell(u"exec >&- 2>&-; sleep 0.3; : >done; exit 5"_s), Shell(u"ls done"_s)});
    const Call result = Run();
    EXPECT_TRUE(result.Output.ends_with("\ndone\n"));
    EXPECT_NE(result.Output.find("-\nlate\n\n# /"), std::string::npos);
    EXPECT_NE(result.Error.find("exit status 4\n"), std::string::npos);
    EXPECT_NE(result.Error.find("exit status 5\n"), std::string::npos);
}

TEST_F(RunnerTest, OutputThatCannotBeWrittenIsAFailure) {
    Document({{"echo", {"x"}}, Shell(u"exit 1"_s), Shell(u": >last"_s)});
    const std::string full = "rivenfall-run: standard output can't be written: No space left on "
                             "device\n";
    Call result = Bash("$RUN doc.tvq >/dev/full");
    EXPECT_EQ(result.Status, 3);
    EXPECT_TRUE(result.Error.starts_with(full + "rivenfall-run: sh -c")) << result.Error;
    EXPECT_TRUE(Exists("last"));
    result = Bash("$RUN -e doc.tvq >/dev/full");
    EXPECT_EQ(result.Status, 3);
    EXPECT_EQ(result.Error, full);
    EXPECT_EQ(Bash("$RUN -n doc.tvq >/dev/null && $RUN -p doc.tvq >/dev/full").Status, 3);
}

TEST_F(RunnerTest, ASettingHoldsForTheRunWhateverIsTicked) {
    Document({{"printf", {"%s|", "${A}", "${b}", "${C}", "${D}"}}}, "doc.tvq",
             "!A(1),A(2),B(!3,!4),C(${A}${B}),D(5)");
    const QByteArray document = BytesOf(Path("doc.tvq"));
    // Settings, and what the command prints.
    const std::pair<const char*, const char*> cases[] = {{"", "2||2|5|"},
                                                         {"a=x", "x||x|5|"},
                                                         {"B=${D}=${a}|A=y", "y|5=y|y5=y|5|"},
                                                         {"D=6|d=|C=${C}", "2||||"}};
    for (const auto& [settings, output] : cases) {
        QStringList arguments{u"doc.tvq"_s};
        arguments += QString::fromUtf8(settings).split(u'|', Qt::SkipEmptyParts);
        const Call result = Run(arguments);
        const std::string expected = output;
        EXPECT_TRUE(result.Output.ends_with("-\n" + expected)) << result.Output;
        EXPECT_EQ(result.Status, 0) << result.Error;
    }
    EXPECT_EQ(BytesOf(Path("doc.tvq")), document);
}

TEST_F(RunnerTest, PrintsTheDocumentForPeopleAndComparisons) {
    const char* compilers = "!gcc(-o(!a.out,b),~(${F})),~";
    Document(Sketches(compilers), "doc.tvq", "F(1\n\t\\\x1B,\u202E漢)");
    const Call result = Run({u"-p"_s, u"doc.tvq"_s});
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Output, "Compilers\n  [ ] gcc\n    [x] -o\n      [ ] a.out\n      [x] b\n"
                             "    [x]\n      [x] ${F}\n  [x]\nVariables\n  [x] F\n"
                             "    [x] 1\\n\\t\\\\\\x1b\n    [x] \\u202e漢\n");
    Document(Sketches("!gcc(-o(a.out,b),~(${F})),~"), "ticked.tvq", "F(1\n\t\\\x1B,\u202E漢)");
    EXPECT_EQ(Bash("diff <($RUN -p doc.tvq) <($RUN -p ticked.tvq)").Output,
              "4c4\n<       [ ] a.out\n---\n>       [x] a.out\n");
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
    EXPECT_NE(refused.Error.find("is no UTF-8 text"), std::string::npos);
    EXPECT_EQ(Start(u"sh"_s, {u"-c"_s, call.arg(u"\\357\\273\\277"_s), program}).Status, 0);
    EXPECT_TRUE(QFile::exists(Path("marked")) && !QFile::exists(Path("wrong")));
}

TEST_F(RunnerTest, RunsWithoutStandardStreams) {
    Document({Shell(u"exec >out; ls /proc/$$/fd"_s)});
    EXPECT_EQ(Bash("exec $RUN doc.tvq <&- >&- 2>&-").Status, 0);
    EXPECT_EQ(TextOf("out"), "0\n1\n2\n");
}

TEST_F(RunnerTest, AChainOfToolsStopsOrGoesOn) {
    Document({{"g++", {"-S", "-o", "a.s", "${FILE}.cpp"}},
              {"as", {"-o", "a.o", "a.s"}},
              {"g++", {"-o", "tool", "a.o"}},
              {"strip", {"tool"}}},
             "doc.tvq", "FILE(good)");
    StoreBytes(Path("good.cpp"), "#include <cstdio>\nint main() { std::puts(\"well\"); }\n");
    StoreBytes(Path("broken.cpp"), "int main() { return wrong; }\n");
    const Call good = Run();
    EXPECT_EQ(good.Status, 0) << good.Error;
    EXPECT_EQ(good.Output, FrameOf(u"g++ -S -o a.s good.cpp"_s) + '\n' +
                               FrameOf(u"as -o a.o a.s"_s) + '\n' + FrameOf(u"g++ -o tool a.o"_s) +
                               '\n' + FrameOf(u"strip tool"_s));
    EXPECT_EQ(Bash("./tool; nm tool 2>&1").Output, "well\nnm: tool: no symbols\n");

    const Call broken = Run({u"doc.tvq"_s, u"FILE=broken"_s});
    EXPECT_EQ(broken.Status, 3);
    EXPECT_TRUE(broken.Error.ends_with("\nrivenfall-run: 4 of 4 command lines failed\n"));
    EXPECT_NE(broken.Output.find("wrong"), std::string::npos);
    const Call stopped = Run({u"-e"_s, u"doc.tvq"_s, u"FILE=broken"_s});
    EXPECT_EQ(stopped.Status, 3);
    EXPECT_EQ(stopped.Error, "rivenfall-run: g++ -S -o a.s broken.cpp: exit status 1\n"
                             "rivenfall-run: 1 of 4 command lines failed, 3 not carried out\n");
    EXPECT_EQ(stopped.Output, broken.Output.substr(0, broken.Output.find("\n# /")));
    EXPECT_TRUE(stopped.Output.starts_with(FrameOf(u"g++ -S -o a.s broken.cpp"_s)));
}

} // namespace
