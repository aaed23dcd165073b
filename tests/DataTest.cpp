#include "CoreHarness.h"

#include "data/DataNode.h"
#include "document/DocumentFile.h"
#include "system/MessageBox.h"

using namespace rivenfall;

namespace {

/// A tree of compilers whose events are kept as "+" (Add), ">" (Move) or "-" (Remove) with the key
/// and the value of the node.
class DataTest : public testing::Test, private DataNodesEvents {
protected:
    DataTest() {
        Root.SetDataNodesType(NodeKind::Compiler);
        Root.SetEvents(this);
    }

    void Add(DataNode& DN) override { Keep("+", DN); }
    void Move(DataNode& DN) override { Keep(">", DN); }
    void Remove(DataNode& DN) override {
        Keep("-", DN);
        // It still stands in its list, which isn't renumbered yet, and has nothing below it.
        EXPECT_EQ(DN.Parent()->Item(DN.Index()).get(), &DN);
        EXPECT_EQ(DN.Parent()->Item(DN.Parent()->Count())->Index(), DN.Parent()->Count());
        EXPECT_EQ(DN.Childs(), nullptr);
    }

    void Keep(const char* event, const DataNode& node) {
        Events += QLatin1StringView(event) + node.Key() + node.Value();
    }
    std::string TakeEvents() { return std::exchange(Events, {}).join(u' ').toStdString(); }

    static void Grow(DataNodes& nodes, const std::vector<Sketch>& sketches) {
        for (const Sketch& sketch : sketches) {
            const auto node = nodes.Add(sketch.Value);
            if (node->Childs()) {
                Grow(*node->Childs(), sketch.Below);
            }
        }
    }

    /// The values in their order, with a "-" behind those of inactive nodes.
    static std::string OrderOf(const DataNodes& nodes) {
        std::string order;
        for (const auto& node : nodes) {
            EXPECT_EQ(nodes.Item(node->Index()), node);
            order += node->Value().toStdString() + (node->Active() ? "" : "-");
        }
        return order;
    }

    QStringList Events;
    DataNodes Root;
};

TEST_F(DataTest, DeletesASubtreeFromTheBottomUp) {
    Grow(Root, Sketches("a,b(p(v,w),q(v,w)),c(p,q(v))"));
    TakeEvents();
    const auto deleted = Root.Item(2), below = deleted->Childs()->Item(1);
    Root.Remove(2);
    EXPECT_EQ(TakeEvents(), "-c2p2v2w -c2p2v1v -c2p2v0q -c2p1v2w -c2p1v1v -c2p1v0p -c2p0v0b");
    for (const auto& gone : {deleted, below}) {
        EXPECT_TRUE(gone->Index() == 0 && gone->Value().isEmpty());
        EXPECT_TRUE(!gone->Parent() && !gone->Childs());
    }
    EXPECT_EQ(Root.Item(2)->Childs()->Item(2)->Childs()->Item(1)->Key().toStdString(), "c2p2v1");
    EXPECT_THROW(Root.Item(3), std::out_of_range);
    EXPECT_THROW(Root.Remove(0), std::out_of_range);
    Root.Clear();
    Root.Clear();
    EXPECT_EQ(TakeEvents(), "-c2p2v1v -c2p2v0q -c2p1v0p -c2p0v0c -c1p0v0a");
}

TEST_F(DataTest, MovesANodeToAPosition) {
    QStringList asked;
    const MessageBoxHandler former =
        SetMessageBoxHandler([&](const QString& text, MessageBoxStyle style, const QString& title) {
            asked += u"%1|%2|%3"_s.arg(text).arg(static_cast<int>(style)).arg(title);
            return MessageBoxAnswer::Ok;
        });
    Grow(Root, Sketches("a,b,c"));
    TakeEvents();
    Root.Item(1)->Move(3);
    EXPECT_EQ(OrderOf(Root), "bca");
    Root.Item(3)->Move(1);
    Root.Item(2)->Move(2);
    EXPECT_EQ(OrderOf(Root), "abc");
    EXPECT_EQ(TakeEvents(), ">c3p0v0a >c1p0v0a >c2p0v0b");
    Root.Item(2)->Move(0);
    Root.Item(2)->Move(4);
    EXPECT_EQ(OrderOf(Root) + TakeEvents(), "abc");
    SetMessageBoxHandler(former);
    EXPECT_EQ(asked.size(), 2);
    EXPECT_EQ(asked.front().toStdString(), "DestinationIndex out of range|48|"
                                           "OMRA Rivenfall Compiler Controller 1.5.0");
}

TEST_F(DataTest, LoadedAlternativesStayActiveUntilOneIsSwitchedOn) {
    QTemporaryDir folder;
    const QString path = StoreBytes(folder.filePath(u"a.tvq"_s),
                                    DocumentImage(Sketches("c(p(a,!b,c))"), Sketches("V(a,b)")));
    DocumentContent content;
    ASSERT_EQ(ReadDocumentFile(path, content).toStdString(), "");
    Grow(Root, Sketches("x"));
    TakeEvents();
    Root.TakeNodesOf(content.Compilers);
    EXPECT_EQ(TakeEvents(), "-c1p0v0x");
    EXPECT_EQ(Root.Item(1)->Parent(), &Root);
    DataNodes& values = *Root.Item(1)->Childs()->Item(1)->Childs();
    EXPECT_EQ(OrderOf(values), "ab-c");
    values.Item(1)->SetActive(false);
    values.Item(1)->Move(3);
    EXPECT_EQ(OrderOf(values), "b-ca-");
    values.Item(3)->SetActive(true);
    EXPECT_EQ(OrderOf(values), "b-c-a");
    values.Item(1)->SetActive(true);
    EXPECT_EQ(OrderOf(values), "bc-a-");
    content.Variables.Item(1)->Childs()->Add(u"c"_s);
    EXPECT_EQ(OrderOf(*content.Variables.Item(1)->Childs()), "a-b-c");
}

} // namespace
