#include "CoreHarness.h"

#include "data/DataNode.h"
#include "document/DocumentFile.h"
#include "support/Title.h"
#include "system/MessageBox.h"

using namespace rivenfall;

namespace {

/// A tree of compilers whose events are kept, each with the key and the value of the node.
class DataTest : public testing::Test {
protected:
    DataTest() {
        Root.SetDataNodesType(NodeKind::Compiler);
        Root.SetEvents({[this](DataNode& DN) { Keep("Add", DN); },
                        [this](DataNode& DN) { Keep("Move", DN); },
                        [this](DataNode& DN) { KeepRemoved(DN); }});
    }

    void KeepRemoved(const DataNode& DN) {
        Keep("Remove", DN);
        // It still stands in its list, which isn't renumbered yet, and has nothing below it.
        EXPECT_EQ(DN.Parent()->Item(DN.Index()).get(), &DN);
        EXPECT_EQ(DN.Parent()->Item(DN.Parent()->Count())->Index(), DN.Parent()->Count());
        EXPECT_EQ(DN.Childs(), nullptr);
    }

    void Keep(const char* event, const DataNode& node) {
        Events += QLatin1StringView(event) + u' ' + node.Key() + u' ' + node.Value();
    }
    QStringList TakeEvents() { return std::exchange(Events, {}); }

    static void Grow(DataNodes& nodes, const std::vector<Sketch>& sketches) {
        for (const Sketch& sketch : sketches) {
            const auto node = nodes.Add(sketch.Value);
            if (node->Childs()) {
                Grow(*node->Childs(), sketch.Below);
            }
        }
    }

    /// The nodes of one collection, with commas between them and "!" before the inactive ones.
    static std::string Outline(const DataNodes& nodes) {
        QStringList outline;
        for (const auto& node : nodes) {
            EXPECT_EQ(nodes.Item(node->Index()), node);
            outline += (node->Active() ? u""_s : u"!"_s) + node->Value();
        }
        return outline.join(u',').toStdString();
    }

    QStringList Events;
    DataNodes Root;
};

TEST_F(DataTest, DeletesASubtreeFromTheBottomUp) {
    Grow(Root, Sketches("a,b(p(v,w),q(v,w)),c(p,q(v))"));
    TakeEvents();
    const auto deleted = Root.Item(2), below = deleted->Childs()->Item(1);
    Root.Remove(2);
    EXPECT_EQ(TakeEvents(),
              (QStringList{u"Remove c2p2v2 w"_s, u"Remove c2p2v1 v"_s, u"Remove c2p2v0 q"_s,
                           u"Remove c2p1v2 w"_s, u"Remove c2p1v1 v"_s, u"Remove c2p1v0 p"_s,
                           u"Remove c2p0v0 b"_s}));
    for (const auto& gone : {deleted, below}) {
        EXPECT_EQ(gone->Index(), 0);
        EXPECT_EQ(gone->Value(), QString());
        EXPECT_EQ(gone->Parent(), nullptr);
        EXPECT_EQ(gone->Childs(), nullptr);
    }
    // What stood behind it has moved up.
    EXPECT_EQ(Root.Item(2)->Childs()->Item(2)->Childs()->Item(1)->Key(), u"c2p2v1");
    EXPECT_THROW(Root.Item(3), std::out_of_range);
    EXPECT_THROW(Root.Remove(0), std::out_of_range);
    Root.Clear();
    Root.Clear();
    EXPECT_EQ(TakeEvents(),
              (QStringList{u"Remove c2p2v1 v"_s, u"Remove c2p2v0 q"_s, u"Remove c2p1v0 p"_s,
                           u"Remove c2p0v0 c"_s, u"Remove c1p0v0 a"_s}));
}

TEST_F(DataTest, MovesNoNodeOutOfItsList) {
    QStringList asked;
    const MessageBoxHandler former =
        SetMessageBoxHandler([&](const QString& text, MessageBoxStyle style, const QString& title) {
            asked += u"%1|%2|%3"_s.arg(text).arg(static_cast<int>(style)).arg(title);
            return MessageBoxAnswer::Ok;
        });
    Grow(Root, Sketches("a,b,c"));
    TakeEvents();
    Root.Item(2)->Move(0);
    Root.Item(2)->Move(4);
    SetMessageBoxHandler(former);
    EXPECT_EQ(Outline(Root), "a,b,c");
    EXPECT_EQ(TakeEvents(), QStringList());
    EXPECT_EQ(asked, QStringList(2, u"DestinationIndex out of range|48|"_s + ProgramTitle()));
}

TEST_F(DataTest, LoadedAlternativesStayActiveUntilOneIsSwitchedOn) {
    QTemporaryDir folder;
    const QString path =
        StoreBytes(folder.filePath(u"a.tvq"_s),
                   DocumentImage(Sketches("c(p(a,!b,c)),\uFEFFd"), Sketches("V(a,b)")));
    DocumentContent content;
    ASSERT_EQ(ReadDocumentFile(path, content).toStdString(), "");
    Grow(Root, Sketches("x"));
    TakeEvents();
    Root.TakeNodesOf(content.Compilers);
    EXPECT_EQ(TakeEvents(), QStringList{u"Remove c1p0v0 x"_s});
    EXPECT_EQ(Root.Item(1)->Parent(), &Root);
    // A byte order mark in front of a value is a character of it.
    EXPECT_EQ(Root.Item(2)->Value(), QChar::ByteOrderMark + u"d"_s);
    DataNodes& values = *Root.Item(1)->Childs()->Item(1)->Childs();
    EXPECT_EQ(Outline(values), "a,!b,c");
    values.Item(1)->SetActive(false);
    values.Item(1)->Move(3);
    EXPECT_EQ(Outline(values), "!b,c,!a");
    values.Item(3)->SetActive(true);
    EXPECT_EQ(Outline(values), "!b,!c,a");
    values.Item(1)->SetActive(true);
    EXPECT_EQ(Outline(values), "b,!c,!a");
    content.Variables.Item(1)->Childs()->Add(u"c"_s);
    EXPECT_EQ(Outline(*content.Variables.Item(1)->Childs()), "!a,!b,c");
}

} // namespace
