#include "RunnerHarness.h"

#include <csignal>

using namespace rivenfall;

namespace {

using RunnerSignalTest = RunnerTest;

/// A command that tells of its start in a file `started`, sends @p signal to the program alone,
/// counts for a while how often it hears one itself, and ends as if it had mastered that. With 0 it
/// goes where the terminal's keys don't reach it: two signals at once would be one.
Sketch Hearing(int signal) {
    return {"perl",
            {"-e",
             "$SIG{$_} = sub { $heard .= x } for qw(INT QUIT HUP TERM); $ARGV[0] or setpgrp;"
             "open F, '>started'; kill $ARGV[0], getppid; select undef, undef, undef, 0.1 for 1..8;"
             "print \"heard $heard\\n\"",
             QString::number(signal)}};
}

/// Works a call with @p options at a terminal: the keys are typed as soon as there is a file
/// `started`.
std::string AtTerminal(const char* keys, const std::string& options = "doc.tvq") {
    return std::string("rm -f started; (timeout 20 sh -c 'until [ -e started ]; do sleep 0.01; "
                       "done'; sleep 0.2; printf '") +
           keys + "'; sleep 1) | script -qec '$RUN " + options + "' /dev/null";
}

TEST_F(RunnerSignalTest, TheChildHearsOnceAndEndsFirst) {
    const Sketch next = {"echo", {"next"}};
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        Run("-i").Of({Hearing(signal), next}).Prints("…-\nheard x\n").Ends(128 + signal);
    }
    Document({Hearing(0), next});
    Bash(AtTerminal("\\003", "-i doc.tvq")).Prints("…-\r\n^Cheard \r\n").Ends(128 + SIGINT);
    // One that ends itself by a signal has told nobody else to end.
    Run().Of({Shell(u"kill -INT $$"_s), "true"}).Tells("…ended by SIGINT\n…").Ends(3);
}

TEST_F(RunnerSignalTest, WhatWasIgnoredStaysIgnored) {
    Document(
        {Shell(u"kill -HUP $PPID $$; echo on >out"_s), {"grep", {"SigIgn", "/proc/self/status"}}});
    Bash("nohup $RUN doc.tvq 2>&1").Prints("…SigIgn:\t0000000000000001\n").Ends(0);
    EXPECT_EQ(TextOf("out"), "on\n");
    // But a program that isn't to hear of its children would wait for ever.
    Document({"true", Shell(u"exec >&- 2>&-; sleep 0.1; exit 7"_s)});
    Bash("env --ignore-signal=CHLD --block-signal=CHLD $RUN doc.tvq").Tells("…").Ends(3);
}

TEST_F(RunnerSignalTest, ALimitOnTheSizeOfFilesIsToldAndLeftToTheChild) {
    Document({{"grep", {"SigIgn", "/proc/self/status"}}});
    Bash("$RUN doc.tvq").Prints("…SigIgn:\t0000000000000000\n").Ends(0);
    Bash("ulimit -f 0; $RUN --print doc.tvq >log")
        .Tells("rivenfall-run: standard output can't be written: File too large\n")
        .Ends(3);
}

TEST_F(RunnerSignalTest, AClosedPipeEndsItBehindItsChild) {
    Document({"yes", Shell(u": >next"_s)});
    Bash("$RUN doc.tvq | head -c 200 >/dev/null; exit ${PIPESTATUS[0]}")
        .Tells("rivenfall-run: [1/2] yes: ended by SIGPIPE\n")
        .Ends(128 + SIGPIPE);
    EXPECT_FALSE(Exists("next"));
}

TEST_F(RunnerSignalTest, StopsAndGoesOnWithItsChild) {
    Document({Shell(u"echo $$ >started; until [ -e go ]; do sleep 0.01; done; echo went"_s)});
    Bash("set -m; $RUN doc.tvq >log & run=$!\n"
         "until [ -s started ]; do sleep 0.01; done\n"
         "state() { cut -d ' ' -f 3 /proc/$1/stat; }\n"
         "kill -TSTP -- -$run; until [[ $(state $run)$(state $(cat started)) = T[TD] ]]; do "
         "sleep 0.01; done; : >go; fg >/dev/null; echo $?; tail -n 1 log")
        .Prints("0\nwent\n")
        .Tells("…")
        .Ends(0);
}

TEST_F(RunnerSignalTest, AChildHasWhatTheProgramHas) {
    Document({Shell(u"cut -d ' ' -f 5 /proc/$$/stat /proc/$PPID/stat | uniq | wc -l; "
                    "head -n 1; echo seven >&7"_s),
              {"cat", {"${FILE}"}},
              Shell(u"sleep 9 & echo left >&2"_s)},
             "doc.tvq", "FILE(~)");
    Bash("echo input | timeout 5 $RUN doc.tvq FILE=<(echo from a pipe) 7>out")
        .Prints("…-\n1\ninput\n\n…-\nfrom a pipe\n\n…-\nleft\n")
        .Ends(0);
    EXPECT_EQ(TextOf("out"), "seven\n");
    // At a terminal both streams are the terminal, and the child is asked there.
    const Sketch asking = Shell(u"echo >started; read word; test -t 1 -a -t 2 && echo got $word"_s);
    Document({asking, asking});
    Bash(AtTerminal("one\\ntwo\\n")).Prints("…got one\r\n…got two\r\n").Ends(0);
}

TEST_F(RunnerSignalTest, ADocumentDoesNotSteerTheTerminal) {
    const QString text = u"😀\x1B]0;t\a\n\u202E\u0085\u2066\u2067\u2068\u2069'\\n"_s;
    Document({Shell(u"echo >started; printf '\\033[1m'; printf %s \"$0\" >out"_s, {text}),
              {"no\x1B[2J"}});
    const std::string shown = Bash(AtTerminal("")).Ends(3);
    EXPECT_NE(shown.find(R"( "😀\x1b]0;t\a\n\u202e\x85\u2066\u2067\u2068\u2069'\n")"),
              std::string::npos)
        << shown;
    EXPECT_NE(shown.find(R"(rivenfall-run: [2/2] no\x1b[2J: can't)"), std::string::npos);
    // What a dry run shows is the same command when it is copied to a shell.
    QFile::remove(Path("out"));
    const std::string dry =
        Bash("script -qec '$RUN -n doc.tvq' /dev/null </dev/null | tee /dev/stderr | "
             "tr -d '\\r' | head -n 1 | bash >log")
            .Tells("…")
            .Ends(0);
    EXPECT_EQ(TextOf("out"), text.toStdString());
    for (const char* steering : {"\x1B]", "\x1B[2J", "\u202E", "\u2066", "\u2069"}) {
        EXPECT_EQ((shown + dry).find(steering), std::string::npos);
    }
}

} // namespace
