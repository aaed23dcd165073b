#include "Harness.h"

#include "platform/CommandLine.h"
#include "platform/CurrentDirectory.h"
#include "platform/DataObject.h"
#include "platform/Process.h"
#include "platform/PropertyBag.h"

#include <QDir>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QUrl>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace rivenfall;

namespace {

TEST(CommandLineTest, QuotesOnlyWhatNeedsIt) {
    const struct {
        QStringList Items;
        const char* Text;
    } cases[] = {
        {{}, ""},
        {{u"a"_qs, u"-b=$c*|>'x'"_qs}, "a -b=$c*|>'x'"},
        {{QString()}, R"("")"},
        {{u"a b"_qs, u"c\td"_qs}, "\"a b\" \"c\td\""},
        {{u"l1\nl2\r"_qs}, "\"l1\nl2\r\""},
        {{uR"(C:\dir\)"_qs, u"x"_qs}, R"(C:\dir\ x)"},
        {{uR"(C:\my dir\)"_qs, u"x"_qs}, R"("C:\my dir\\" x)"},
        {{uR"(a"b)"_qs, uR"(a\"b)"_qs}, R"("a\"b" "a\\\"b")"},
        {{uR"(\\ \\)"_qs}, R"("\\ \\\\")"},
    };
    for (const auto& line : cases) {
        EXPECT_EQ(JoinCommandLine(line.Items).toStdString(), line.Text);
        EXPECT_EQ(SplitCommandLine(QString::fromUtf8(line.Text)), line.Items);
    }
    const auto split = [](const char* text) {
        return SplitCommandLine(QString::fromUtf8(text)).join(u'|').toStdString();
    };
    EXPECT_EQ(split("  a \t\r\n b  "), "a|b");
    EXPECT_EQ(split(R"(a"b c"d "" 'e f')"), "ab cd||'e|f'");
    EXPECT_EQ(split(R"("never closed \\ \x)"), R"(never closed \\ \x)");
    EXPECT_EQ(split(R"(\" \\"a b" \\\"c d)"), R"("|\a b|\"c|d)");
}

TEST(CommandLineTest, GivesEveryItemBack) {
    const QString alphabet = u"a\\\\\" \t\n'$\u0436"_qs;
    QRandomGenerator random(20);
    for (int round = 0; round < 20000; ++round) {
        QStringList items;
        for (int count = random.bounded(1, 4); count > 0; --count) {
            items += QString();
            for (int length = random.bounded(8); length > 0; --length) {
                items.last() += alphabet[random.bounded(static_cast<int>(alphabet.size()))];
            }
        }
        ASSERT_EQ(SplitCommandLine(JoinCommandLine(items)), items)
            << JoinCommandLine(items).toStdString();
    }
}

/// Starts @p items with a silent standard input and gives what they print until their output ends.
QByteArray OutputOf(const QStringList& items) {
    Handle inputRead = 0, inputWrite = 0, outputRead = 0, process = 0;
    StandardStreams streams;
    EXPECT_TRUE(CreatePipe(inputRead, inputWrite) && CreatePipe(outputRead, streams.Output));
    streams.Input = DuplicateHandle(inputRead);
    CloseHandle(inputRead);
    streams.Error = streams.Output;
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
    return OutputOf(QStringList{u"sh"_qs, u"-c"_qs, QString::fromUtf8(script)} + arguments);
}

TEST(ProcessTest, EveryArgumentArrivesByteForByte) {
    const QStringList arguments{u"name"_qs,     u" lead and trail "_qs,
                                u"\t"_qs,       u"say \"hi\""_qs,
                                u"\""_qs,       uR"(C:\my dir\)"_qs,
                                uR"(\\)"_qs,    QString(),
                                u"1\n2\r\n"_qs, QString::fromUtf8("жук 漢字 😀 é"),
                                u"*.c"_qs,      u"$HOME;|>&`'"_qs};
    const QByteArray expected = arguments.join(QChar::Null).toUtf8() + '\0';
    EXPECT_EQ(OutputOfScript(R"(printf '%s\0' "$0" "$@")", arguments), expected);
}

TEST(ProcessTest, AChildHasThreeDescriptorsAndCleanSignals) {
    const auto formerAction = std::signal(SIGUSR2, SIG_IGN);
    sigset_t blocked, formerMask;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &formerMask);
    const int openWithoutCloseOnExec = dup(STDOUT_FILENO);
    const QByteArray state =
        OutputOfScript("ls /proc/$$/fd; grep -E 'Sig(Blk|Ign|Cgt)' /proc/$$/status; "
                       "stat -Lc %F /proc/$$/fd/0; timeout 0.2 head -c1; echo $?");
    close(openWithoutCloseOnExec);
    sigprocmask(SIG_SETMASK, &formerMask, nullptr);
    std::signal(SIGUSR2, formerAction);
    EXPECT_EQ(QString::fromUtf8(state).simplified().toStdString(),
              "0 1 2 SigBlk: 0000000000000000 SigIgn: 0000000000000000 SigCgt: 0000000000000000 "
              "fifo 124");
}

TEST(ProcessTest, BothOutputsAreOneStreamInOrder) {
    EXPECT_EQ(OutputOfScript("for i in 1 2 3 4 5; do echo o$i; echo e$i >&2; done").simplified(),
              "o1 e1 o2 e2 o3 e3 o4 e4 o5 e5");
}

TEST(ProcessTest, TellsWhyNothingWasStarted) {
    QTemporaryDir folder;
    const QString plain = StoreBytes(folder.filePath(u"plain"_qs), "#!/bin/sh\n");
    const struct {
        QString CommandLine;
        int Error;
    } cases[] = {{u"rivenfall-no-such-program x"_qs, ENOENT},
                 {QString(), ENOENT},
                 {u"\"\" x"_qs, ENOENT},
                 {plain, EACCES},
                 {folder.path(), EACCES},
                 {plain + u"/x"_qs, ENOTDIR},
                 {u"echo a"_qs + QChar::Null + u"b"_qs, EINVAL}};
    const int before = OpenDescriptors();
    for (const auto& start : cases) {
        Handle process = 0;
        EXPECT_FALSE(CreateProcess(start.CommandLine, {0, 1, 2}, process));
        EXPECT_EQ(LastError(), start.Error) << start.CommandLine.toStdString();
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(ProcessTest, FiveHundredChildrenLeaveNothingBehind) {
    OutputOf({u"true"_qs});
    const int before = OpenDescriptors();
    for (int count = 0; count < 500; ++count) {
        OutputOf({u"true"_qs});
    }
    // These close their output long before they end.
    for (int count = 0; count < 10; ++count) {
        OutputOfScript("exec >&- 2>&-; sleep 0.1");
    }
    EXPECT_EQ(OpenDescriptors(), before);
    // Not even an ended child that still waits for somebody to ask how it went.
    EXPECT_TRUE(WaitFor([] { return waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD; }));
}

TEST(CurrentDirectoryTest, GoesWhereAPathLeads) {
    const QString former = QDir::currentPath();
    QTemporaryDir folder;
    const QString base = QDir(folder.path()).canonicalPath();
    for (const char* name :
         {"plain", "with blank", "qu\"ote", "C:\\work", "\xD0\xB6\xD1\x83\xD0\xBA"}) {
        const QString path = QString::fromUtf8(name);
        QDir(base).mkdir(path);
        ASSERT_EQ(ChangeDirectory(base).Number, 0);
        EXPECT_EQ(ChangeDirectory(JoinCommandLine({path})).Number, 0) << name;
        EXPECT_EQ(QDir::currentPath(), base + u'/' + path);
    }
    EXPECT_EQ(ChangeDirectory(u".."_qs).Description, QString());
    EXPECT_EQ(ChangeDirectory(u"with blank"_qs).Number, 0);
    const struct {
        QString Path;
        int Error;
    } cases[] = {{u"none"_qs, ENOENT},
                 {QString(), ENOENT},
                 {u"\"\""_qs, ENOENT},
                 {StoreBytes(base + u"/file"_qs, ""), ENOTDIR},
                 {base + QChar::Null + u"x"_qs, EINVAL}};
    for (const auto& change : cases) {
        const DirectoryChange result = ChangeDirectory(change.Path);
        EXPECT_EQ(result.Number, change.Error) << change.Path.toStdString();
        EXPECT_EQ(result.Description, QString::fromLocal8Bit(std::strerror(change.Error)));
        EXPECT_EQ(QDir::currentPath(), base + u"/with blank"_qs);
    }
    QDir::setCurrent(former);
}

TEST(PropertyBagTest, WritesTheseBytes) {
    PropertyBag bag;
    bag.WriteProperty("Value", QString::fromUtf8("é"));
    bag.WriteProperty("Active", true, true);
    bag.WriteProperty("Off", false, true);
    bag.WriteProperty("On", true);
    bag.WriteProperty("B", QByteArray("\0\xFF", 2));
    bag.WriteProperty("Empty", QString());
    EXPECT_EQ(bag.Contents().toHex(), "a5"
                                      "65"
                                      "56616c7565"
                                      "62c3a9"
                                      "63"
                                      "4f6666"
                                      "f4"
                                      "62"
                                      "4f6e"
                                      "f5"
                                      "61"
                                      "42"
                                      "4200ff"
                                      "65"
                                      "456d707479"
                                      "60");
    const struct {
        int Number;
        const char* Bytes;
    } cases[] = {{0, "00"},
                 {23, "17"},
                 {24, "1818"},
                 {255, "18ff"},
                 {256, "190100"},
                 {65535, "19ffff"},
                 {65536, "1a00010000"},
                 {2147483647, "1a7fffffff"},
                 {-1, "20"},
                 {-24, "37"},
                 {-25, "3818"},
                 {std::numeric_limits<int>::min(), "3a7fffffff"}};
    for (const auto& integer : cases) {
        PropertyBag one;
        one.WriteProperty("n", integer.Number);
        EXPECT_EQ(one.Contents().toHex(), QByteArray("a1616e") + integer.Bytes);
        PropertyBag read;
        read.SetContents(one.Contents() + "bytes behind the image");
        EXPECT_EQ(read.ReadProperty("n"), QVariant(integer.Number));
        EXPECT_EQ(read.Contents(), one.Contents());
    }
}

TEST(PropertyBagTest, FindsNamesInAnyOrder) {
    PropertyBag bag;
    for (int number = 1; number <= 300; ++number) {
        bag.WriteProperty("Item" + QByteArray::number(number), number);
    }
    EXPECT_EQ(bag.Contents().left(3).toHex(), "b9012c");
    PropertyBag read;
    read.WriteProperty("Old", 1);
    read.SetContents(bag.Contents());
    for (int number : {300, 1, 150, 2, 3, 151, 299}) {
        EXPECT_EQ(read.ReadProperty("Item" + QByteArray::number(number)), QVariant(number));
    }
    EXPECT_EQ(read.ReadProperty("Old"), QVariant());
    EXPECT_EQ(read.ReadProperty("Item301", 5), QVariant(5));
    read.WriteProperty("Item301", 6);
    EXPECT_EQ(read.ReadProperty("Item301", 5), QVariant(6));
    EXPECT_EQ(read.Contents().size(), bag.Contents().size() + 9);
}

TEST(PropertyBagTest, RefusesWhatIsNoImage) {
    for (const char* bytes : {"",
                              "00",
                              "60",
                              "80",
                              "bf",
                              "a1",
                              "a161",
                              "a16161",
                              "a1616118",
                              "bb7fffffffffffffff",
                              "a17bffffffffffffffff",
                              "a161615bffffffffffffffff",
                              "a161617b7fffffffffffffff61",
                              "a161615affffffff00",
                              "a1616162c328",
                              "a161611a80000000",
                              "a161613a80000000",
                              "a161611b0000000100000000",
                              "a16161f6",
                              "a16161f0",
                              "a16161f93c00",
                              "a16161a0",
                              "a1616180",
                              "a16161c100",
                              "a161615f4161ff",
                              "a1616f",
                              "a14161f4",
                              "a10000",
                              "a161611c",
                              "ff"}) {
        PropertyBag bag;
        bag.WriteProperty("Old", 1);
        EXPECT_THROW(bag.SetContents(QByteArray::fromHex(bytes)), PropertyBagError) << bytes;
        EXPECT_EQ(bag.Contents().toHex(), "a0") << bytes;
    }
}

TEST(MultiLineTextBoxTest, ShowsEveryKindOfLineBreakOnce) {
    QWidget window;
    MultiLineTextBox box(&window);
    int changes = 0;
    QObject::connect(&box, &MultiLineTextBox::Change, &window, [&changes] { ++changes; });
    for (const char* piece : {"a\r", "\nb\n", "c\r", "d\r", "\n", "\r\n", "\r", "\r"}) {
        box.AppendText(QLatin1StringView(piece));
    }
    auto* edit = static_cast<QPlainTextEdit*>(box.Widget());
    EXPECT_EQ(edit->toPlainText().toStdString(), "a\nb\nc\nd\n\n\n");
    EXPECT_EQ(box.Text().toStdString(), "a\r\nb\nc\rd\r\n\r\n\r\r");
    EXPECT_EQ(box.TextLength(), 15);
    edit->setFocus();
    QTest::keyClicks(edit, u"xyz"_qs);
    EXPECT_EQ(box.TextLength() + changes, 15 + 8);
    box.SetText(u"\nnew"_qs);
    EXPECT_EQ(edit->toPlainText().toStdString(), "\nnew");
    box.SetSelStartToEnd();
    EXPECT_EQ(edit->textCursor().position(), 4);
}

TEST(DataObjectTest, TellsTextFromFiles) {
    const QList<QUrl> files{QUrl::fromLocalFile(u"/tmp/a b"_qs), QUrl(u"http://host/x"_qs),
                            QUrl::fromLocalFile(u"/tmp/c"_qs)};
    const struct {
        const char* Text;
        QList<QUrl> Urls;
        bool HasText;
        int Files;
    } cases[] = {{nullptr, {}, false, 0},
                 {"hello", {}, true, 0},
                 {"", {}, true, 0},
                 {nullptr, files, false, 2},
                 {"/tmp/a b\nhttp://host/x\n/tmp/c", files, false, 2},
                 {"file:///tmp/a%20b\r\nhttp://host/x\r\nfile:///tmp/c\r\n", files, false, 2},
                 {"other text", files, true, 2},
                 {nullptr, {files[1]}, false, 0}};
    for (const auto& drag : cases) {
        QMimeData data;
        if (drag.Text) {
            data.setText(QString::fromUtf8(drag.Text));
        }
        if (!drag.Urls.isEmpty()) {
            data.setUrls(drag.Urls);
        }
        const DataObject object(data);
        EXPECT_EQ(object.GetFormat(DataObjectText), drag.HasText)
            << (drag.Text ? drag.Text : "none");
        EXPECT_EQ(object.GetFormat(DataObjectFiles), drag.Files > 0);
        EXPECT_EQ(object.GetData(DataObjectText).toStdString(), drag.HasText ? drag.Text : "");
        ASSERT_EQ(object.Files().Count(), drag.Files);
        if (drag.Files > 0) {
            EXPECT_EQ(object.Files().Item(2).toStdString(), "/tmp/c");
            EXPECT_EQ(object.GetData(DataObjectFiles).toStdString(), "/tmp/a b\n/tmp/c");
        }
        EXPECT_FALSE(object.GetFormat(2));
    }
}

} // namespace
