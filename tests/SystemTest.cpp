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
    EXPECT_EQ(split(""), "");
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

QByteArray OutputOfScript(const char* script, const QStringList& arguments = {}) {
    return OutputOf(QStringList{u"sh"_s, u"-c"_s, QString::fromUtf8(script)} + arguments);
}

TEST(ProcessTest, AChildHasThreeStreamsAndCleanSignals) {
    const auto formerAction = std::signal(SIGUSR2, SIG_IGN);
    sigset_t blocked, formerMask;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &formerMask);
    const int openWithoutCloseOnExec = dup(STDOUT_FILENO);
    const QByteArray state = OutputOfScript("ls /proc/$$/fd; timeout 0.2 head -c1; echo $?; "
                                            "for i in 1 2 3; do echo o$i; echo e$i >&2; done");
    // A shell would change both while it waits.
    const QByteArray signalState =
        OutputOf({u"grep"_s, u"-E"_s, u"Sig(Blk|Ign)"_s, u"/proc/self/status"_s});
    close(openWithoutCloseOnExec);
    sigprocmask(SIG_SETMASK, &formerMask, nullptr);
    std::signal(SIGUSR2, formerAction);
    EXPECT_EQ(state.simplified().toStdString(), "0 1 2 124 o1 e1 o2 e2 o3 e3");
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

TEST(PropertyBagTest, FindsNamesInAnyOrder) {
    PropertyBag bag, read;
    for (int number = 1; number <= 300; ++number) {
        bag.WriteProperty("Item" + QByteArray::number(number), number);
    }
    EXPECT_EQ(bag.Contents().left(3).toHex(), "b9012c");
    read.WriteProperty("Old", 1);
    read.SetContents(bag.Contents());
    for (int number : {300, 1, 150, 2, 3, 151, 299}) {
        EXPECT_EQ(read.ReadProperty("Item" + QByteArray::number(number)), QVariant(number));
    }
    EXPECT_EQ(read.ReadProperty("Old"), QVariant());
    read.WriteProperty("Item301", 6);
    EXPECT_EQ(read.ReadProperty("Item301", 5), QVariant(6));
    EXPECT_EQ(read.ReadProperty("Item302", 5), QVariant(5));
    EXPECT_EQ(read.Contents().size(), bag.Contents().size() + 9);
    read.WriteProperty("Item7", 0);
    EXPECT_EQ(read.ReadProperty("Item7"), QVariant(7));
}

TEST(PropertyBagTest, RefusesWhatIsNoImage) {
    const auto expectRefused = [](const char* what, const std::vector<const char*>& images) {
        for (const char* image : images) {
            PropertyBag bag;
            bag.WriteProperty("Old", 1);
            EXPECT_THROW(bag.SetContents(QByteArray::fromHex(image)), PropertyBagError)
                << what << ": " << image;
            EXPECT_EQ(bag.Contents().toHex(), "a0") << what << ": " << image;
        }
    };
    expectRefused("no map", {"", "00", "60", "80", "ff", "bf"});
    expectRefused("cut off", {"a1", "a161", "a16161", "a1616118"});
    expectRefused("a length beyond the end",
                  {"bb7fffffffffffffff", "a17bffffffffffffffff", "a161617b7fffffffffffffff61",
                   "a161615bffffffffffffffff", "a161615affffffff00"});
    expectRefused("a name that is no text", {"a10000", "a14161f4"});
    expectRefused("a text that is no UTF-8", {"a1616162c328", "a162c328f4"});
    expectRefused("a number of more than 32 bits",
                  {"a161611a80000000", "a161613a80000000", "a161611b0000000100000000", "a161611c"});
    expectRefused("a value of no known kind: null, simple, floating, map, list, tag, pieces",
                  {"a16161f6", "a16161f0", "a16161f93c00", "a16161a0", "a1616180", "a16161c100",
                   "a161615f4161ff"});
}

} // namespace
