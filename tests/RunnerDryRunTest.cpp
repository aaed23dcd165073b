#include "RunnerHarness.h"

using namespace rivenfall;

namespace {

using RunnerDryRunTest = RunnerTest;

TEST_F(RunnerDryRunTest, PrintsLinesForAShellAndStartsNothing) {
    QDir(Folder.path()).mkdir(u"my dir"_s);
    // A script without "#!" is one for a shell alone.
    for (const auto& [name, text] : {std::pair{"tool", "#!/bin/sh\n"}, {"script", "echo"}}) {
        QFile(StoreBytes(Path(name), text)).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }
    // What comes behind a directory that isn't there is looked for only where that is certain.
    Run("-n")
        .Of({Shell(u": >started"_s, {u"it's"_s, u"${A}"_s}),
             "./tool",
             "./script",
             {"cd", {"my dir", "${A}"}},
             "./tool",
             {"cd", {"../-x"}},
             {"cd", {"/gone", "x"}},
             "cd",
             "no-such",
             "./tool",
             {"no-such", {"${NONE}${none}${SELF}"}}},
            "A(~),SELF(${SELF}),!NONE(x)")
        .Prints("sh -c ': >started' 'it'\\''s' '' </dev/null\n"
                "./tool </dev/null\n./script </dev/null\ncd './my dir'\n./tool </dev/null\n"
                "cd -P ../-x\ncd '/gone x'\nfalse # cd \nno-such </dev/null\n"
                "./tool </dev/null\nno-such '' </dev/null\n")
        .Tells("rivenfall-run: ./script: Exec format error\n"
               "rivenfall-run: ./tool: No such file or directory\n"
               "rivenfall-run: cd ../-x: No such file or directory\n"
               "rivenfall-run: cd /gone x: No such file or directory\n"
               "rivenfall-run: no-such: No such file or directory\n"
               "rivenfall-run: ${NONE}: no value found\n"
               "rivenfall-run: ${none}: no value found\n"
               "rivenfall-run: ${SELF}: no value found\n")
        .Ends(0);
    EXPECT_FALSE(Exists("started"));
}

TEST_F(RunnerDryRunTest, ReferencesBecomeValues) {
    // Texts, and what becomes of each as a word of the shell.
    const std::pair<const char*, const char*> cases[] = {
        // What is no reference stays.
        {"$A}", "'$A}'"},
        {"${A}-${B", "'x-${B'"},
        {"$${A}", "'$x'"},
        // A name has letters of either case, and ends at the first bracket.
        {"${жУК𐐀}${ss}", "beetle"},
        {"${ A }", "''"},
        {"${A${B}}", "'}'"},
        {"${X]}${}", "bracket0"},
        // References in values stop where they come back to themselves, and make up no new ones.
        {"${F}${G}${H}", "acdbcabdhh"},
        {"${P}{A}${Open}}", "'${A}${A}'"},
        // Variables and values that are switched off don't count.
        {"${C}${D}${E}${M}${N}", "d2m2"}};
    std::vector<Sketch> texts;
    std::string line = "(exec echo";
    for (const auto& [text, word] : cases) {
        texts.emplace_back(text);
        line += std::string(" ") + word;
    }
    Run("-n")
        .Of({{"echo", texts}},
            "A(x),!C(c1),D(!d1,d2,d3),E(!e1),F(a${G}b),G(c${F}d),H(h${H}h),!M(m1),M(m2),N(!n1),"
            "N(n2),P($),Жук𐐨(beetle),ß(sharp),Open(${A),x](bracket),~(0)")
        .Prints(line + ") </dev/null\n")
        .Tells("…")
        .Ends(0);
}

TEST_F(RunnerDryRunTest, AShellDoesWhatTheRunDoes) {
    // Programs that tell how they were called; a shell has something of its own for some names.
    QDir(Folder.path()).mkdir(u"bin"_s);
    std::vector<Sketch> compilers;
    for (const char* name : {"tool", "echo", "test", "[", "if", "time", "cat", "-x", "a=b",
                             "my tool", "~", "exit", "漢"}) {
        const QString path = Path("bin/") + QString::fromUtf8(name);
        StoreBytes(path, "#!/bin/dash\nprintf '%s\\0' \"$(pwd -P)\" \"$0\" \"$@\" >>\"$OUT\"\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
        compilers.push_back({name,
                             {"a b", "-n", "\\n", "it's \"$HOME\"`x`\\", "1\n2\n", "${EMPTY}", "*",
                              "x=y", "#", "&", "漢字 😀", "~", "!!"}});
        compilers.back().Below.push_back(Sketch(QString(u'a') + QChar(u'\x7F') + u'\t'));
    }
    for (const char* folder : {"-x/deep", "decoy/-x", "decoy/plain", "plain", "a  b", "-x/a b"}) {
        QDir(Folder.path()).mkpath(QString::fromUtf8(folder));
    }
    QFile::link(u"-x/deep"_s, Path("link"));
    const std::vector<std::vector<Sketch>> changes = {
        {"-x"},    {".."},          {"link"},
        {".."},    {"-"},           {"~"},
        {},        {"${EMPTY}"},    {"gone"},
        {".."},    {"a  b"},        {".."},
        {"plain"}, {"../-x"},       {"a", "${EMPTY}", "b"},
        {"."},     {"../../plain"}, {"a", "b"}};
    for (const std::vector<Sketch>& path : changes) {
        compilers.push_back({"cd", path});
        compilers.push_back({"tool", {}});
    }
    // It would take in the lines behind it, were its standard input the shell's.
    compilers.insert(compilers.begin(), Shell(u"timeout 0.2 head -c 99999; :"_s));
    compilers.push_back("no-such");
    compilers.push_back("tool");
    Environment.insert(u"CDPATH"_s, Path("decoy"));
    Environment.insert(u"PATH"_s, Path("bin") + u':' + Environment.value(u"PATH"_s));

    Environment.insert(u"OUT"_s, Path("run"));
    Run().Of(compilers).Tells("…").Ends(3);
    EXPECT_GT(TextOf("run").size(), 1000U);
    for (const char* shell : {"dash", "bash", "sh"}) {
        QFile::remove(Path("shell"));
        Environment.insert(u"OUT"_s, Path("shell"));
        Bash(std::string("$RUN -n doc.tvq | ") + shell).Tells("…").Ends(0);
        EXPECT_TRUE(TextOf("shell") == TextOf("run")) << shell << '\n' << TextOf("shell");
    }
}

} // namespace
