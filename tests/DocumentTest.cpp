#include "WindowDriver.h"

#include "system/PropertyBag.h"

#include <QDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace rivenfall;

namespace {

// Alternatives that are on together stay so, and a byte order mark is a character.
const std::vector<Sketch> SomeCompilers = Sketches("cc(-o(a,!b,c),!-g),!\uFEFFld");
const std::vector<Sketch> SomeVariables = Sketches("FILE1(x,y),!~");

/// A bag of the entries @p entries.
QByteArray Bag(std::initializer_list<std::pair<const char*, QVariant>> entries) {
    PropertyBag bag;
    for (const auto& [name, value] : entries) {
        bag.WriteProperty(name, value);
    }
    return bag.Contents();
}

class DocumentTest : public ProgramTest {
protected:
    QByteArray Content() {
        return DocumentImage(SketchOf(Program().Compilers()), SketchOf(Program().Variables()));
    }
    bool OpenBytes(const QByteArray& bytes) {
        return Program().FileOpen(StoreBytes(Path(u"other.tvq"_s), bytes));
    }

    /// A changed document isn't given up for the file @p name.
    void ExpectRefused(const QString& name) {
        // The one of before is given up.
        TheUser.Answers = {MessageBoxAnswer::No};
        EXPECT_TRUE(Program().FileOpen(
            StoreBytes(Path(u"good.tvq"_s), DocumentImage(SomeCompilers, SomeVariables))));
        Program().NodeMove(true);
        const QByteArray former = Content();
        TheUser.Asked.clear();
        TheUser.Answers = {MessageBoxAnswer::No};
        EXPECT_FALSE(Program().FileOpen(Path(name)));
        ASSERT_EQ(TheUser.Asked.size(), 2) << name.toStdString();
        EXPECT_TRUE(TheUser.Asked[0].startsWith(u"The file was changed."));
        EXPECT_TRUE(
            TheUser.Asked[1].startsWith(u"The file "_s + Path(name) + u" can't be opened: "_s));
        EXPECT_EQ(Content(), former);
        EXPECT_TRUE(Window().Caption().startsWith(u"good.tvq - "_s));
        EXPECT_EQ(Program().FileTitle(), u"good.tvq"_s);
    }
};

TEST_F(DocumentTest, ANewDocumentIsWrittenWholeAndReadBack) {
    Program().FileNew();
    const QString path = Path(u"näw file.tvq"_s);
    TheUser.Files = {path};
    EXPECT_TRUE(Program().FileSave());
    EXPECT_EQ(BytesOf(path), DocumentImage(Sketches("~(~(${FILE1}))"), Sketches("FILE1(~)")));
    EXPECT_EQ(QDir(Folder.path()).entryList(QDir::Files).size(), 1);

    const QByteArray image = DocumentImage(SomeCompilers, SomeVariables);
    EXPECT_TRUE(OpenBytes(image + "what a longer file left behind"));
    EXPECT_EQ(Content(), image);
    Program().Compilers()->Item(1)->SetExpanded(false);
    EXPECT_TRUE(Program().FileSave());
    EXPECT_EQ(BytesOf(Path(u"other.tvq"_s)), image);
    EXPECT_TRUE(Program().FileOpen(path));
    EXPECT_EQ(Program().FileTitle().toStdString(), "näw file.tvq");
    EXPECT_TRUE(OpenBytes(image));
    EXPECT_TRUE(Program().Compilers()->Item(1)->Expanded());
    EXPECT_EQ(TheUser.Asked, QStringList());
    // Whoever hears that a node goes still finds it at its place.
    QStringList removed;
    Program().Compilers()->SetEvents(
        {{}, {}, [&](DataNode& node) { removed += node.Parent()->Item(node.Index())->Key(); }});
    Program().Compilers()->Clear();
    EXPECT_EQ(removed.join(u' '), u"c2p0v0 c1p2v0 c1p1v3 c1p1v2 c1p1v1 c1p1v0 c1p0v0");
}

TEST_F(DocumentTest, OldVersionsHaveTheirCompilersOnly) {
    const QByteArray first = CollectionImage(SomeCompilers, 2);
    const QByteArray variables = CollectionImage(SomeVariables, 1);
    const QByteArray second =
        Bag({{"_FileFormatIdentification", u"TAVQEF#0002"_s},
             {"_Content", Bag({{"Compilers", first}, {"Variables", variables}})}});
    for (const QByteArray& bytes : {first, second}) {
        EXPECT_TRUE(OpenBytes(bytes));
        EXPECT_EQ(Content(), DocumentImage(SomeCompilers, Sketches("FILE1(~)")));
    }
}

const QByteArray NoNodes = CollectionImage({}, 0);

/// A document whose compilers are stored as @p compilers.
QByteArray WithCompilers(const QVariant& compilers) {
    return Bag({{"_FileFormatIdentification", u"TAVQEF#0003"_s},
                {"_Content", Bag({{"Compilers", compilers}, {"Variables", NoNodes}})}});
}

/// A document whose one compiler is stored as @p node.
QByteArray WithNode(const QByteArray& node) {
    return WithCompilers(Bag({{"Count", 1}, {"Item1", node}}));
}

/// Documents that are refused, each in its own way.
std::vector<QByteArray> BrokenDocuments() {
    const QVariant third = u"TAVQEF#0003"_s, empty = u""_s;
    return {
        "",
        "plain text",
        // Bags of the first version, which holds a count.
        Bag({{"Count", -1}}),
        QByteArray::fromHex("a165436f756e743b00000000ffffffff"),
        // Identifications, and what belongs to them.
        Bag({{"Count", 0}, {"_FileFormatIdentification", 1}}),
        Bag({{"Count", 0}, {"_FileFormatIdentification", u"TAVQEF#0004"_s}}),
        Bag({{"Count", 0}, {"_FileFormatIdentification", u"TAVQEF#0002"_s}}),
        Bag({{"_Content", u"x"_s}, {"_FileFormatIdentification", third}}),
        Bag({{"_Content", Bag({{"Compilers", NoNodes}})}, {"_FileFormatIdentification", third}}),
        // Collections.
        WithCompilers(1),
        WithCompilers(Bag({})),
        WithCompilers(Bag({{"Count", 2147483647}})),
        WithCompilers(Bag({{"Count", 1}, {"Item2", NoNodes}})),
        // Nodes.
        WithNode("x"),
        WithNode(Bag({})),
        WithNode(Bag({{"Value", 1}, {"Childs", NoNodes}})),
        WithNode(Bag({{"Value", empty}})),
        WithNode(Bag({{"Value", empty}, {"Active", 0}, {"Childs", NoNodes}})),
    };
}

TEST_F(DocumentTest, ABrokenDocumentChangesNothing) {
    // One of the same make that isn't broken.
    ASSERT_TRUE(OpenBytes(WithNode(Bag({{"Value", u""_s}, {"Childs", NoNodes}}))));
    for (const QByteArray& bytes : BrokenDocuments()) {
        SCOPED_TRACE(bytes.left(99).toHex().toStdString());
        StoreBytes(Path(u"other.tvq"_s), bytes);
        ExpectRefused(u"other.tvq"_s);
    }
}

TEST_F(DocumentTest, WhatIsNoDocumentFileChangesNothing) {
    QDir(Folder.path()).mkdir(u"folder"_s);
    ASSERT_EQ(mkfifo(Path(u"pipe.tvq"_s).toUtf8().constData(), 0600), 0);
    QFile(StoreBytes(Path(u"huge"_s), "\xA0")).resize(1LL << 32);
    for (const char* name : {"folder", "pipe.tvq", "huge", "none", "none/x", "good.tvq/x"}) {
        ExpectRefused(QLatin1StringView(name));
    }
}

} // namespace
