#include "RunnerHarness.h"

#include <cstring>

using namespace rivenfall;

namespace {

TEST_F(RunnerTest, TheStatusTellsWhyNothingWasDone) {
    Document(Sketches("!true"), "off.tvq");
    StoreBytes(Path("broken.tvq"), "\xA1");
    // Arguments, exit status and the first line on standard error behind the program's name.
    const std::tuple<const char*, int, std::string> cases[] = {
        {"off.tvq", 1, "No compilers to run! Please select some..."},
        {"none.tvq", 2, "The file none.tvq can't be opened: No such file or directory."},
        {"broken.tvq", 2, "The file broken.tvq can't be opened: the data ends too early."},
        {"-- --help", 2, "The file --help can't be opened: No such file or directory."},
        {"-C home -C ../home ../off.tvq -n", 1, "No compilers to run! Please select some..."},
        {"-C nowhere off.tvq", 2,
         "The directory nowhere can't be changed to: No such file or directory."},
        {"off.tvq EMPTY", 2, "The argument EMPTY isn't of the form NAME=VALUE."},
        {"off.tvq EMPTI=x", 2, "The document has no variable \"EMPTI\". There are: EMPTY."},
        {"-x off.tvq", 2, "invalid option -- 'x'"},
        {"-ei off.tvq", 2, "The options -e and -i exclude each other."},
        {"-n --print off.tvq", 2, "The options -l, -n and -p exclude each other."},
        {"-p off.tvq A=B", 2, "The option -p shows the document as it is, without changes."},
        {"", 2, "The name of a document is missing."}};
    for (const auto& [arguments, status, error] : cases) {
        const std::string output = status == 1 && !std::strstr(arguments, "-n")
                                       ? FrameOf(u"No compilers to run!"_s, "Please select some...")
                                       : "";
        Run(arguments).Prints(output).Tells("…rivenfall-run: " + error + "\n…").Ends(status);
    }
}

TEST_F(RunnerTest, TellsOfItself) {
    Run("--help")
        .Prints("Usage: rivenfall-run [OPTION]... DOCUMENT [NAME=VALUE]...\nCarry…"
                "--on TEXT…-C, --directory DIR…-e, --stop-on-error…-p, --print…\nExit status:\n…")
        .Ends(0);
    Run("--version")
        .Prints("rivenfall-run (OMRA Rivenfall Compiler Controller) " RIVENFALL_VERSION "\n…")
        .Ends(0);
    Bash("$RUN --help >/dev/null && $RUN --version >/dev/full").Tells("…").Ends(3);
}

TEST_F(RunnerTest, FailuresAreToldAndCounted) {
    const std::vector<Sketch> document = {Shell(u"exit 3"_s),    "true",
                                          {"no such", {"a\tb"}}, Shell(u"kill -KILL $$"_s),
                                          {"cd", {"gone"}},      Shell(u"echo last"_s)};
    const std::string first = "rivenfall-run: [1/6] sh -c \"exit 3\": exit status 3\n";
    const std::string all =
        first +
        R"(rivenfall-run: [3/6] "no such" "a\tb": can't be started: No such file or directory)"
        "\nrivenfall-run: [4/6] sh -c \"kill -KILL $$\": ended by SIGKILL\n"
        "rivenfall-run: [5/6] cd gone: No such file or directory\n"
        "rivenfall-run: 4 of 6 command lines failed\n";
    Run().Of(document).Prints("…-\nlast\n").Tells(all).Ends(3);
    Run("-i").Of(document).Prints("…-\nlast\n").Tells(all).Ends(0);
    Run("-e")
        .Of(document)
        .Prints(FrameOf(u"sh -c \"exit 3\""_s))
        .Tells(first + "rivenfall-run: 1 of 6 command lines failed, 5 not carried out\n")
        .Ends(3);
    Run().Of({"true", {"cd", {"home"}}, Shell(u"kill -0 $$"_s)}).Ends(0);
    // What is long leaves room for the reason.
    Run()
        .Of({{"false", {QString(79 - 6, u'x') + QString::fromUtf8("😀") + QString(9999, u'x')}}})
        .Tells("rivenfall-run: [1/1] false " + std::string(73, 'x') + " …: exit status 1\n…")
        .Ends(3);
    // What no start can take isn't told as started.
    Document({{"true", {QString(131'072, u'x')}}});
    Bash("$RUN doc.tvq | grep success").Tells("…: Argument list too long\n…").Ends(1);
}

TEST_F(RunnerTest, OutputThatCannotBeWrittenIsAFailure) {
    Document({"true", Shell(u"exit 1"_s), Shell(u": >last"_s)});
    const std::string full = "rivenfall-run: standard output can't be written: No space left on "
                             "device\n";
    Bash("$RUN -e doc.tvq >/dev/full").Tells(full).Ends(3);
    EXPECT_FALSE(Exists("last"));
    Bash("$RUN -i doc.tvq >/dev/full").Tells(full + "rivenfall-run: [2/3] sh -c…").Ends(3);
    EXPECT_TRUE(Exists("last"));
    Bash("$RUN -n doc.tvq >/dev/null && $RUN -p doc.tvq >/dev/full").Tells(full).Ends(3);
    // A pipe that somebody has set not to wait, and that is full, is neither.
    Document({{"echo", {QString(100'000, u'x')}}});
    Bash("perl -MFcntl -e 'fcntl STDOUT, F_SETFL, O_WRONLY | O_NONBLOCK; exec @ARGV' "
         "$RUN -n doc.tvq | (sleep 0.2; wc -c)")
        .Prints("100024\n")
        .Ends(0);
}

TEST_F(RunnerTest, ASettingHoldsForTheRunWhateverIsTicked) {
    // Settings, and what the command prints.
    const std::pair<std::string, std::string> cases[] = {{"", "2||2|5|"},
                                                         {"a=x", "x||x|5|"},
                                                         {"B=${D}=${a} A=y", "y|5=y|y5=y|5|"},
                                                         {"D=6 d= C=${C}", "2||||"}};
    const std::vector<Sketch> compilers = {{"printf", {"%s|", "${A}", "${b}", "${C}", "${D}"}}};
    Document(compilers, "doc.tvq", "!A(1),A(2),B(!3,!4),C(${A}${B}),D(5)");
    const std::string former = TextOf("doc.tvq");
    for (const auto& [settings, output] : cases) {
        Run("doc.tvq " + settings).Prints("…-\n" + output).Ends(0);
        EXPECT_EQ(TextOf("doc.tvq"), former);
    }
}

TEST_F(RunnerTest, ChecksHoldForTheRunAlone) {
    // Options, what the run or the list prints, and the status.
    const std::tuple<const char*, const char*, int> cases[] = {
        {"-q --off x", "a1\n", 0},
        {"-q --on X2", "a1 x2\n", 0},
        {"-q --on x2 --on x", "a1 x\n", 0},
        {"-q --on x --on x2 --off A${V}", "\n", 0},
        {"-q --on PRINTF", "a1 x\nb", 0},
        {"-q --only printf", "b", 0},
        {"-q --only printf --off printf --only Echo", "a1 x\nb", 0},
        {"-q --off echo", "", 1},
        {"-q --only x", "", 2},
        {"-qn --on none", "", 2},
        {"-l --on printf", "V = 1 | 2\\n | \\\\\nW | 3\n[x] echo\n[x] printf\n", 0},
        {"-nu --on printf --off x", "(exec echo a1) </dev/null\n(exec printf b) </dev/null\n", 0},
        {"-u --on c${W}${w}${U}", "", 2}};
    for (const auto& [options, output, status] : cases) {
        Run(options)
            .Of(Sketches("echo(a${V}(x,!x2),!c${W}${w}${U}),!printf(b)"), "V(!2\n,1,!\\),!W(3)")
            .Prints(output)
            .Tells(status == 0 ? "" : "…")
            .Ends(status);
    }
    Run("--only x")
        .Of(Sketches("a(b),~,a,\n"), "V(!1)")
        .Tells("rivenfall-run: The document has no compiler \"x\". There are: a, \\n.\n")
        .Ends(2);
}

TEST_F(RunnerTest, PrintsTheDocumentForPeople) {
    Run("-p")
        .Of(Sketches("!gcc(-o(!a.out,b),~(${F})),~"), "F(1\n\t\\\x1B,\u202E\u200B漢)")
        .Prints("Compilers\n  [ ] gcc\n    [x] -o\n      [ ] a.out\n      [x] b\n"
                "    [x]\n      [x] ${F}\n  [x]\nVariables\n  [x] F\n"
                "    [x] 1\\n\\t\\\\\\x1b\n    [x] \\u202e\\u200b漢\n")
        .Ends(0);
}

TEST_F(RunnerTest, TextArrivesWholeInAnyEnvironment) {
    const QStringList arguments{u"out"_s,      u"a \"b\"\t\\"_s, u"q\""_s,
                                u"${EMPTY}"_s, u"1\n2"_s,        QString::fromUtf8("漢字 😀")};
    const QByteArray expected =
        arguments.sliced(1).join(QChar::Null).replace(u"${EMPTY}"_s, QString()).toUtf8() + '\0';
    // What a child writes passes as it is, also what is no text.
    const QByteArray text = QByteArray("a\r\n\0b\r", 6) + "漢\xFF\xE6\r";
    StoreBytes(Path("text"), text);
    Environment.clear();
    Environment.insert(u"LC_ALL"_s, u"C"_s);
    Run()
        .Of({Shell(u"printf '%s\\0' \"$@\" >\"$0\""_s, arguments), {"cat", {"text"}}})
        .Prints("…-\n" + text.toStdString())
        .Ends(0);
    EXPECT_EQ(BytesOf(Path("out")), expected);
}

TEST_F(RunnerTest, APathLeadsWhereTheKernelTakesIt) {
    QDir(Folder.path()).mkpath(u"far/off"_s);
    ASSERT_TRUE(QFile::link(u"far/off"_s, Path("link")));
    // The other one stands where the path would lead as a text.
    Document({{"echo", {"wrong"}}});
    Document({{"echo", {"right"}}}, "far/doc.tvq");
    Run("link/../doc.tvq").Prints("…-\nright\n").Ends(0);

    // The same for a name that isn't UTF-8, and one that begins with a byte order mark.
    Document({{"echo", {"wrong"}}}, "\uFFFD.tvq");
    Document({{"echo", {"marked"}}}, "./\uFEFF.tvq");
    Bash("exec $RUN $'\\xFF.tvq'").Tells("…The argument \uFFFD.tvq is no UTF-8 text.\n…").Ends(2);
    Bash("exec $RUN $'\\xEF\\xBB\\xBF.tvq'").Prints("…-\nmarked\n").Ends(0);
    // A folder that one stands in has a name for the kernel alone.
    Bash("mkdir $'\\xFF' '\"s\" '; cp far/doc.tvq $'\\xFF'; cp far/doc.tvq '\"s\" '\n"
         "$RUN -C '\"s\" ' doc.tvq && cd $'\\xFF' && $RUN doc.tvq && rm -r ../$'\\xFF'")
        .Prints("…-\nright\n…-\nright\n")
        .Ends(0);
}

TEST_F(RunnerTest, RunsWithoutStandardStreams) {
    Document({Shell(u"exec 3>out; ls /proc/$$/fd | grep -c '^[0-2]$' >&3"_s)});
    Bash("exec $RUN -i doc.tvq <&- >&- 2>&-").Ends(3);
    EXPECT_EQ(TextOf("out"), "3\n");
}

} // namespace
