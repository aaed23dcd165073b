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
    Document({Waiting(), Shell(u": >next"_s)});
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        QProcess process;
        StartAndWait(process, Environment.value(u"RUN"_s), {u"doc.tvq"_s});
        kill(static_cast<pid_t>(process.processId()), signal);
        const Call result = EndOf(process);
        EXPECT_EQ(result.Status, 128 + signal);
        EXPECT_EQ(result.Error, "");
        EXPECT_TRUE(AllEnded()) << signal;
        EXPECT_FALSE(Exists("next"));
    }
    EXPECT_EQ(Bash("timeout 0.5 $RUN doc.tvq >log; echo $?; cat log").Output,
              "124\n" + FrameOf(Waiting().Below[1].Value.prepend(u"sh -c \"").append(u'"')));
    EXPECT_TRUE(AllEnded());
}

TEST_F(RunnerSignalTest, TheChildMayTidyUpFirst) {
    Document({Shell(u"trap 'echo tidied; sleep 0.2; echo up; exit' TERM; "
                    "echo >started; while :; do sleep 0.01; done"_s)});
    QProcess process;
    StartAndWait(process, Environment.value(u"RUN"_s), {u"doc.tvq"_s});
    process.terminate();
    const Call result = EndOf(process);
    EXPECT_EQ(result.Status, 128 + SIGTERM);
    EXPECT_TRUE(result.Output.ends_with("tidied\nup\n")) << result.Output;
}

TEST_F(RunnerSignalTest, WhatWasIgnoredStaysIgnored) {
    Document(
        {Shell(u"kill -HUP $PPID $$; echo on >out"_s), {"grep", {"SigIgn", "/proc/self/status"}}});
    const Call result = Bash("nohup $RUN doc.tvq 2>&1; echo $?");
    EXPECT_TRUE(result.Output.ends_with("SigIgn:\t0000000000000001\n0\n")) << result.Output;
    EXPECT_EQ(TextOf("out"), "on\n");
    // But a program that isn't to hear of its children would wait for ever.
    Document({"true", Shell(u"exec >&- 2>&-; sleep 0.1; exit 7"_s)});
    EXPECT_EQ(Bash("env --ignore-signal=CHLD --block-signal=CHLD $RUN doc.tvq >log").Status, 3);
}

TEST_F(RunnerSignalTest, AClosedPipeEndsItAndItsChild) {
    Document({Shell(u"exec 9>lock; flock 9; sleep 987 & trap '' PIPE; yes; wait"_s),
              Shell(u": >next"_s)});
    const Call result = Bash("$RUN doc.tvq | head -c 200 >/dev/null; echo ${PIPESTATUS[0]}");
    EXPECT_EQ(result.Output, "141\n");
    EXPECT_EQ(result.Error, "");
    EXPECT_TRUE(AllEnded());
    EXPECT_FALSE(Exists("next"));
}

TEST_F(RunnerSignalTest, AReaderThatSleepsDoesNotKeepIt) {
    Document({Shell(u"exec 9>lock; flock 9; echo >started; yes"_s)});
    QProcess process;
    StartAndWait(process, u"bash"_s, {u"-c"_s, u"mkfifo pipe; exec 3<>pipe $RUN doc.tvq >pipe"_s});
    usleep(300'000);
    process.terminate();
    EXPECT_EQ(EndOf(process).Status, 128 + SIGTERM);
    EXPECT_TRUE(AllEnded());
}

TEST_F(RunnerSignalTest, StopsAndGoesOnWithItsChild) {
    Document({Shell(u"echo $$ >started; until [ -e go ]; do sleep 0.01; done; echo went"_s)});
    EXPECT_EQ(Bash("set -m; $RUN doc.tvq >log & run=$!\n"
                   "until [ -s started ]; do sleep 0.01; done\n"
                   "state() { cut -d ' ' -f 3 /proc/$1/stat; }\n"
                   "kill -TSTP $run; until [ $(state $run)$(state $(cat started)) = TT ]; do "
                   "sleep 0.01; done; : >go; fg >/dev/null; echo $?; tail -n 1 log")
                  .Output,
              "0\nwent\n");
}

/// Works the program at a terminal: @p keys are typed as soon as there is a file `started`.
const char* const AtTerminal =
    "(until [ -e started ]; do sleep 0.01; done; sleep 0.2; printf \"$KEYS\"; sleep 0.5) | "
    "script -qec '$RUN doc.tvq' /dev/null; echo \"status $?\"";

TEST_F(RunnerSignalTest, ATerminalWorksItAndItsChild) {
    Document({Waiting(), Shell(u": >next"_s)});
    Environment.insert(u"KEYS"_s, u"\\003"_s);
    Call result = Bash(AtTerminal);
    EXPECT_TRUE(result.Output.ends_with("status 130\n")) << result.Output;
    EXPECT_TRUE(AllEnded());
    EXPECT_FALSE(Exists("next"));
    // A child that asks at the terminal itself gets the answer, and so does the next one.
    QFile::remove(Path("started"));
    const Sketch asking = Shell(u"echo >started; read word </dev/tty; echo got $word"_s);
    Document({asking, asking});
    Environment.insert(u"KEYS"_s, u"one\\ntwo\\n"_s);
    result = Bash(AtTerminal);
    EXPECT_NE(result.Output.find("got one\r\n"), std::string::npos) << result.Output;
    EXPECT_TRUE(result.Output.ends_with("got two\r\nstatus 0\n")) << result.Output;
}

TEST_F(RunnerSignalTest, ADocumentDoesNotSteerTheTerminal) {
    Document({Shell(u"echo >started; printf '\\033[1m'"_s, {u"\x1B]0;t\a\n\u202E\u0085"_s}),
              {"no\x1B[2J"}});
    Environment.insert(u"KEYS"_s, QString());
    const std::string atTerminal = Bash(AtTerminal).Output;
    EXPECT_NE(atTerminal.find(R"("\x1b]0;t\a\n\u202e\x85")"), std::string::npos) << atTerminal;
    EXPECT_NE(atTerminal.find("-\r\n\x1B[1m"), std::string::npos);
    EXPECT_NE(atTerminal.find(R"(rivenfall-run: no\x1b[2J: can't)"), std::string::npos);
    EXPECT_EQ(atTerminal.find("\x1B]"), std::string::npos);
    EXPECT_EQ(atTerminal.find("\x1B[2J"), std::string::npos);
    EXPECT_NE(Run().Output.find("\"\x1B]0;t\a\n\u202E\u0085\""), std::string::npos);
}

} // namespace
