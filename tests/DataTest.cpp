#include "Harness.h"

#include "data/NodeKey.h"
#include "document/DocumentFile.h"

using namespace rivenfall;

namespace {

/// A tree of compilers whose events are kept as "+" (Add), ">" (Move) or "-" (Remove) and, of the
/// node concerned, the key, the value and what of it still stands.
class DataTest : public testing::Test, private DataNodesEvents {
protected:
    DataTest() {
        Root.SetDataNodesType(Compiler);
        Root.SetEvents(this);
    }

    void Add(DataNode& DN) override { Keep("+", DN); }
    void Move(DataNode& DN) override { Keep(">", DN); }
    void Remove(DataNode& DN) override {
        Keep("-", DN);
        // It still stands in its list, at its place, and has nothing below it any more.
        EXPECT_EQ(DN.Parent()->Item(DN.Index()).get(), &DN);
        EXPECT_EQ(DN.Childs(), nullptr);
        for (int index = 1; index <= DN.Parent()->Count(); ++index) {
            EXPECT_EQ(DN.Parent()->Item(index)->Index(), index);
        }
    }

    void Keep(const char* event, const DataNode& node) {
        Events += QLatin1StringView(event) + node.Key() + u'=' + node.Value();
    }
    std::string TakeEvents() { return std::exchange(Events, {}).join(u' ').toStdString(); }

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

TEST_F(DataTest, AddsNodesOfTheKindOfTheirLevel) {
    const auto compiler = Root.Add(u"c"_qs);
    const auto parameter = compiler->Childs()->Add(u"p"_qs);
    const auto first = parameter->Childs()->Add(u"v"_qs);
    const auto second = parameter->Childs()->Add(u"w"_qs);
    EXPECT_EQ(TakeEvents(), "+c1p0v0=c +c1p1v0=p +c1p1v1=v +c1p1v2=w");
    EXPECT_EQ(compiler->DataNodeType(), Compiler);
    EXPECT_EQ(parameter->DataNodeType(), Parameter);
    EXPECT_EQ(second->DataNodeType(), ParameterValue);
    EXPECT_EQ(second->Childs(), nullptr);
    EXPECT_EQ(second->Parent()->Parent()->Parent()->Parent(), compiler.get());
    EXPECT_TRUE(second->Active() && second->Expanded());
    EXPECT_FALSE(first->Active());

    DataNodes variables;
    variables.SetDataNodesType(Variable);
    const auto variable = variables.Add();
    EXPECT_EQ(variable->Childs()->Add()->DataNodeType(), VariableValue);
    EXPECT_EQ(variable->Childs()->Item(1)->Key().toStdString(), "c1p1v0");
    EXPECT_EQ(variable->Childs()->Item(1)->Childs(), nullptr);
    EXPECT_EQ(variable->Text(), QString(64, u' '));
    variable->SetValue(u" "_qs);
    EXPECT_EQ(variable->Text().toStdString(), " ");
}

TEST_F(DataTest, DeletesASubtreeFromTheBottomUp) {
    for (const char* compiler : {"a", "b", "c"}) {
        const auto node = Root.Add(QLatin1StringView(compiler));
        for (const char* parameter : {"p", "q"}) {
            DataNodes* values = node->Childs()->Add(QLatin1StringView(parameter))->Childs();
            values->Add(u"v"_qs);
            values->Add(u"w"_qs);
        }
    }
    TakeEvents();
    const auto deleted = Root.Item(2);
    const auto below = deleted->Childs()->Item(1);
    Root.Remove(2);
    EXPECT_EQ(TakeEvents(),
              "-c2p2v2=w -c2p2v1=v -c2p2v0=q -c2p1v2=w -c2p1v1=v -c2p1v0=p -c2p0v0=b");
    for (const auto& gone : {deleted, below}) {
        EXPECT_TRUE(gone->Index() == 0 && gone->Value().isEmpty() && !gone->Parent() &&
                    !gone->Childs());
    }
    EXPECT_EQ(Root.Item(2)->Childs()->Item(2)->Childs()->Item(1)->Key().toStdString(), "c2p2v1");
    EXPECT_THROW(Root.Item(3), std::out_of_range);
    EXPECT_THROW(Root.Remove(0), std::out_of_range);

    Root.Item(2)->Childs()->Clear();
    Root.Item(1)->Childs()->Clear();
    TakeEvents();
    Root.Clear();
    Root.Clear();
    EXPECT_EQ(TakeEvents(), "-c2p0v0=c -c1p0v0=a");
}

TEST_F(DataTest, MovesANodeToAPosition) {
    User user;
    const struct {
        int From, To;
        const char* Order;
        const char* Event;
    } cases[] = {{1, 3, "bca", ">c1p3v0=a"}, {3, 1, "cab", ">c1p1v0=c"}, {2, 2, "abc", ">c1p2v0=b"},
                 {1, 2, "bac", ">c1p2v0=a"}, {3, 2, "acb", ">c1p2v0=c"}, {2, 0, "abc", ""},
                 {2, 4, "abc", ""},          {2, -1, "abc", ""}};
    DataNodes& nodes = *Root.Add()->Childs();
    int refused = 0;
    for (const auto& move : cases) {
        nodes.Clear();
        for (const char* value : {"a", "b", "c"}) {
            nodes.Add(QLatin1StringView(value));
        }
        TakeEvents();
        nodes.Item(move.From)->Move(move.To);
        EXPECT_EQ(OrderOf(nodes), move.Order) << move.From << " to " << move.To;
        EXPECT_EQ(TakeEvents(), move.Event);
        refused += *move.Event == '\0';
        EXPECT_EQ(user.Asked.size(), refused);
    }
    EXPECT_EQ(user.Asked.front().toStdString(), "DestinationIndex out of range|48|"
                                                "OMRA Rivenfall Compiler Controller 1.5.0");
    Root.Item(1)->Move(1);
    EXPECT_EQ(TakeEvents(), ">c1p0v0=");
}

TEST_F(DataTest, KeepsAtMostOneAlternativeActive) {
    const auto parameter = Root.Add()->Childs()->Add();
    DataNodes& values = *parameter->Childs();
    for (const char* value : {"a", "b", "c", "d"}) {
        values.Add(QLatin1StringView(value));
    }
    EXPECT_EQ(OrderOf(values), "a-b-c-d");
    values.Item(2)->SetActive(true);
    EXPECT_EQ(OrderOf(values), "a-bc-d-");
    values.Item(3)->SetActive(false);
    values.Item(2)->Move(4);
    EXPECT_EQ(OrderOf(values), "a-c-d-b");
    values.Remove(4);
    EXPECT_EQ(OrderOf(values), "a-c-d-");
    values.Item(1)->SetActive(true);
    values.Item(1)->SetActive(false);
    values.Item(3)->SetActive(true);
    EXPECT_EQ(OrderOf(values), "a-c-d");
    values.Add(u"e"_qs);
    EXPECT_EQ(OrderOf(values), "a-c-d-e");
    for (int count = 0; count < 3; ++count) {
        parameter->Parent()->Add();
        Root.Add();
    }
    EXPECT_EQ(OrderOf(*parameter->Parent()) + OrderOf(Root), "");
}

TEST_F(DataTest, LoadedAlternativesStayActiveUntilOneIsSwitchedOn) {
    QTemporaryDir folder;
    const QString path = StoreBytes(
        folder.filePath(u"a.tvq"_qs),
        DocumentImage({{"c", {{"p", {"a", Off("b"), "c"}}}}}, {{"V", {"a", "b", Off("c")}}}));
    DocumentContent content;
    ASSERT_EQ(ReadDocumentFile(path, content).toStdString(), "");
    Root.TakeNodesOf(content.Compilers);
    EXPECT_EQ(TakeEvents(), "");
    DataNodes& values = *Root.Item(1)->Childs()->Item(1)->Childs();
    EXPECT_EQ(OrderOf(values), "ab-c");
    values.Item(1)->SetActive(false);
    values.Item(1)->Move(3);
    EXPECT_EQ(OrderOf(values), "b-ca-");
    values.Item(3)->SetActive(true);
    EXPECT_EQ(OrderOf(values), "b-c-a");
    values.Item(1)->SetActive(true);
    EXPECT_EQ(OrderOf(values), "bc-a-");
    DataNodes& variableValues = *content.Variables.Item(1)->Childs();
    variableValues.Add(u"d"_qs);
    EXPECT_EQ(OrderOf(variableValues), "a-b-c-d");
    EXPECT_EQ(variableValues.Item(4)->Key().toStdString(), "c1p4v0");

    // The nodes that were there before go with their events, the new ones come silently.
    DataNodes others;
    others.SetDataNodesType(Compiler);
    others.Add(u"x"_qs);
    TakeEvents();
    Root.TakeNodesOf(others);
    EXPECT_EQ(TakeEvents(), "-c1p1v3=a -c1p1v2=c -c1p1v1=b -c1p1v0=p -c1p0v0=c");
    EXPECT_EQ(OrderOf(Root) + OrderOf(others), "x");
    EXPECT_EQ(Root.Item(1)->Parent(), &Root);
}

TEST_F(DataTest, FindsNodesByTheirKeys) {
    EXPECT_EQ(MakeNodeKey(12, 0, 0).toStdString(), "c12p0v0");
    const QString key = MakeNodeKey(31, 42, 2147483647);
    EXPECT_EQ(NodeKeyCompiler(key), 31);
    EXPECT_EQ(NodeKeyParameter(key), 42);
    EXPECT_EQ(NodeKeyValue(key), 2147483647);
    for (int compiler = 0; compiler < 2; ++compiler) {
        DataNodes& parameters = *Root.Add()->Childs();
        for (int parameter = 0; parameter < 11; ++parameter) {
            parameters.Add()->Childs()->Add();
        }
    }
    for (const QString& known : {u"c2p0v0"_qs, u"c1p11v0"_qs, u"c2p10v1"_qs}) {
        EXPECT_EQ(NodeFromKey(known, Root)->Key(), known);
    }
}

} // namespace
