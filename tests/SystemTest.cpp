#include "CoreHarness.h"

#include "system/CommandLine.h"
#include "system/Process.h"
#include "system/PropertyBag.h"

#include <QDir>

#include <cerrno>
#include <csignal>
#include <unistd.h>

using namespace rivenfall;

namespace {

TEST(CommandLineTest, QuotesOnlyWhatNeedsIt) {
    // Items with "|" between them, and their command line.
    const std::pair<const char*, const char*> cases[] = {
        {"a|-b=$c*>'x'", "a -b=$c*>'x'"},      {"|", R"("" "")"},
        {"a b|c\td", "\"a b\" \"c\td\""},      {"l1\nl2\r|x", "\"l1\nl2\r\" x"},
        {R"(C:\dir\|x)", R"(C:\dir\ x)"},      {R"(C:\my dir\|x)", R"("C:\my dir\\" x)"},
        {R"(a"b|a\"b)", R"("a\"b" "a\\\"b")"}, {R"(\\ \\|)", R"("\\ \\\\" "")"}};
    const auto split = [](const char* text) {
        return SplitCommandLine(QString::fromUtf8(text)).join(u'|').toStdString();
    };
    for (const auto& [items, text] : cases) {
        EXPECT_EQ(JoinCommandLine(QString::fromUtf8(items).split(u'|')).toStdString(), text);
        EXPECT_EQ(split(text), items);
    }
    EXPECT_EQ(split("  a \t\r\n b  "), "a|b");
    EXPECT_EQ(split(R"(a"b c"d "" 'e f')"), "ab cd||'e|f'");
    EXPECT_EQ(split(R"("never closed \\ \x)"), R"(never closed \\ \x)");
    EXPECT_EQ(split(R"(\" \\"a b" \\\"c d)"), R"("|\a b|\"c|d)");
}

/// Starts @p items with a silent standard input and gives what they print until their output ends.
QByteArray OutputOf(const QStringList& items) {
    Handle inputWrite = 0, outputRead = 0, process = 0;
    StandardStreams streams;
    EXPECT_TRUE(CreatePipes(streams, inputWrite, outputRead));
    EXPECT_TRUE(CreateProcess(JoinCommandLine(items), streams, process)) << LastError();
    CloseHandle(streams.Input);
    CloseHandle(streams.Output);
    QByteArray output;
    char buffer[64];
    int count = 0;
    for (ReadOutcome outcome = ReadOutcome::Nothing; outcome != ReadOutcome::End;) {
        outcome = ReadFile(outputRead, buffer, 64, count);
        EXPECT_EQ(outcome == ReadOutcome::Data, count > 0);
        output.append(buffer, count);
        if (outcome == ReadOutcome::Nothing) {
            usleep(200);
        }
    }
    CloseHandle(inputWrite);
    CloseHandle(outputRead);
    return output;
}

TEST(ProcessTest, AChildHasThreeStreamsAndCleanSignals) {
    const auto formerAction = std::signal(SIGUSR2, SIG_IGN);
    sigset_t blocked, formerMask;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &formerMask);
    const int openWithoutCloseOnExec = dup(STDOUT_FILENO);
    const QByteArray state =
        OutputOf({u"sh"_s, u"-c"_s,
                  u"ls /proc/$$/fd; timeout 0.2 head -c1; echo $?; echo o1; echo e1 >&2"_s});
    // A shell would change both while it waits.
    const QByteArray signalState =
        OutputOf({u"grep"_s, u"-E"_s, u"Sig(Blk|Ign)"_s, u"/proc/self/status"_s});
    close(openWithoutCloseOnExec);
    sigprocmask(SIG_SETMASK, &formerMask, nullptr);
    std::signal(SIGUSR2, formerAction);
    EXPECT_EQ(state.simplified().toStdString(), "0 1 2 124 o1 e1");
    EXPECT_EQ(signalState.simplified().toStdString(),
              "SigBlk: 0000000000000000 SigIgn: 0000000000000000");
}

TEST(ProcessTest, TellsWhyNothingWasStarted) {
    QTemporaryDir folder;
    const QString plain = StoreBytes(folder.filePath(u"plain"_s), "#!/bin/sh\n");
    const std::pair<QString, int> cases[] = {{u"rivenfall-no-such-program x"_s, ENOENT},
                                             {QString(), ENOENT},
                                             {u"\"\" x"_s, ENOENT},
                                             {plain, EACCES},
                                             {folder.path(), EACCES},
                                             {plain + u"/x"_s, ENOTDIR},
                                             {u"echo a"_s + QChar::Null + u"b"_s, EINVAL}};
    const int before = OpenDescriptors();
    for (const auto& [commandLine, error] : cases) {
        Handle process = 0;
        EXPECT_FALSE(CreateProcess(commandLine, {0, 1, 2}, process));
        EXPECT_EQ(LastError(), error) << commandLine.toStdString();
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(PropertyBagTest, WritesTheseBytes) {
    PropertyBag bag;
    bag.WriteProperty("Value", QString::fromUtf8("é"));
    bag.WriteProperty("Active", true, true);
    bag.WriteProperty("Off", false, true);
    bag.WriteProperty("On", true);
    bag.WriteProperty("B", QByteArray("\0\xFF", 2));
    bag.WriteProperty("Empty", QString());
    EXPECT_EQ(bag.Contents().toHex(),
              "a56556616c756562c3a9634f6666f4624f6ef561424200ff65456d70747960");
}

TEST(PropertyBagTest, RefusesWhatIsNoImage) {
    // No map or one of no known length, lengths beyond the end, a name that is no text, texts that
    // are no UTF-8, numbers of more than 32 bits, and values of no known kind.
    for (const char* image :
         {"", "80", "bf", "bb7fffffffffffffff", "a161617b7fffffffffffffff61", "a161615affffffff00",
          "a10000", "a162c328f4", "a1616162c328", "a161611a80000000", "a161613a80000000",
          "a16161f6", "a16161a0", "a161615f4161ff"}) {
        PropertyBag bag;
        bag.WriteProperty("Old", 1);
        EXPECT_THROW(bag.SetContents(QByteArray::fromHex(image)), PropertyBagError) << image;
        EXPECT_EQ(bag.Contents().toHex(), "a0") << image;
    }
}

} // namespace
