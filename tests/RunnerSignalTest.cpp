#include "RunnerHarness.h"

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>

using namespace rivenfall;

namespace {

class RunnerSignalTest : public RunnerTest {
protected:
    /// A command that tells of its start in a file `started`, that waits with a grandchild which
    /// ignores INT, and whose processes hold a lock together.
    Sketch Waiting() {
        return Shell(u"exec 9>lock; flock 9; sleep 987 & echo $$ >started; wait"_s);
    }

    /// Nobody who was started by Waiting is left.
    bool AllEnded() {
        const int lock = open(Path("lock").toUtf8().constData(), O_RDWR);
        int error = -1;
        for (int wait = 0; wait < 500 && error != 0; ++wait) {
            error = flock(lock, LOCK_EX | LOCK_NB);
            usleep(error == 0 ? 0 : 10'000);
        }
        close(lock);
        return error == 0;
    }
};

TEST_F(RunnerSignalTest, ReachTheChildAndEndTheProgram) {
    const std::vector<Sketch> document = {Waiting(), Shell(u": >next"_s)};
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        Run().Of(document).Gets(signal).Ends(128 + signal);
        EXPECT_TRUE(AllEnded()) << signal;
        EXPECT_FALSE(Exists("next"));
    }
    Bash("timeout 0.5 $RUN doc.tvq")
        .Prints(FrameOf(Waiting().Below[1].Value.prepend(u"sh -c \"").append(u'"')))
        .Ends(124);
    EXPECT_TRUE(AllEnded());
}

TEST_F(RunnerSignalTest, TheChildMayTidyUpFirst) {
    Run()
        .Of({Shell(u"trap 'echo tidied; sleep 0.2; echo up; exit' TERM; "
                   "echo >started; while :; do sleep 0.01; done"_s)})
        .Gets(SIGTERM)
        .Prints("…tidied\nup\n")
        .Ends(128 + SIGTERM);
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

TEST_F(RunnerSignalTest, AClosedPipeEndsItAndItsChild) {
    Document({Shell(u"exec 9>lock; flock 9; sleep 987 & trap '' PIPE; yes; wait"_s),
              Shell(u": >next"_s)});
    Bash("$RUN doc.tvq | head -c 200 >/dev/null; exit ${PIPESTATUS[0]}").Ends(141);
    EXPECT_TRUE(AllEnded());
    EXPECT_FALSE(Exists("next"));
}

TEST_F(RunnerSignalTest, AReaderThatSleepsDoesNotKeepIt) {
    Document({Shell(u"exec 9>lock; flock 9; echo >started; yes"_s)});
    Bash("mkfifo pipe; exec 3<>pipe $RUN doc.tvq >pipe").Gets(SIGTERM).Ends(128 + SIGTERM);
    EXPECT_TRUE(AllEnded());
}

TEST_F(RunnerSignalTest, StopsAndGoesOnWithItsChild) {
    Document({Shell(u"echo $$ >started; until [ -e go ]; do sleep 0.01; done; echo went"_s)});
    Bash("set -m; $RUN doc.tvq >log & run=$!\n"
         "until [ -s started ]; do sleep 0.01; done\n"
         "state() { cut -d ' ' -f 3 /proc/$1/stat; }\n"
         "kill -TSTP $run; until [ $(state $run)$(state $(cat started)) = TT ]; do "
         "sleep 0.01; done; : >go; fg >/dev/null; echo $?; tail -n 1 log")
        .Prints("0\nwent\n")
        .Tells("…")
        .Ends(0);
}

/// Works the program at a terminal: the keys are typed as soon as there is a file `started`.
std::string AtTerminal(const char* keys) {
    return std::string("(until [ -e started ]; do sleep 0.01; done; sleep 0.2; printf '") + keys +
           "'; sleep 0.5) | script -qec '$RUN doc.tvq' /dev/null";
}

TEST_F(RunnerSignalTest, ATerminalWorksItAndItsChild) {
    Document({Waiting(), Shell(u": >next"_s)});
    Bash(AtTerminal("\\003")).Ends(130);
    EXPECT_TRUE(AllEnded());
    EXPECT_FALSE(Exists("next"));
    // A child that asks at the terminal itself gets the answer, and so does the next one.
    const Sketch asking = Shell(u"echo >started; read word </dev/tty; echo got $word"_s);
    Document({asking, asking});
    Bash(AtTerminal("one\\ntwo\\n")).Prints("…got one\r\n…got two\r\n").Ends(0);
}

TEST_F(RunnerSignalTest, ADocumentDoesNotSteerTheTerminal) {
    Document({Shell(u"echo >started; printf '\\033[1m'"_s, {u"\x1B]0;t\a\n\u202E\u0085"_s}),
              {"no\x1B[2J"}});
    const std::string atTerminal = Bash(AtTerminal(""))
                                       .Prints("…"
                                               R"("\x1b]0;t\a\n\u202e\x85")"
                                               "…-\r\n\x1B[1m…"
                                               R"(rivenfall-run: no\x1b[2J: can't…)")
                                       .Ends(3);
    EXPECT_EQ(atTerminal.find("\x1B]"), std::string::npos);
    EXPECT_EQ(atTerminal.find("\x1B[2J"), std::string::npos);
    Run("doc.tvq").Prints("…\"\x1B]0;t\a\n\u202E\u0085\"…").Tells("…").Ends(3);
}

} // namespace
