#include "CoreHarness.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableExpander.h"

#include <functional>

using namespace rivenfall;

namespace {

/// The variables that refer to each other as @p values tell, by the names v0, v1 and so on.
std::unique_ptr<DataNodes> Numbered(const QStringList& values) {
    auto root = std::make_unique<DataNodes>();
    root->SetDataNodesType(NodeKind::Variable);
    for (const QString& value : values) {
        root->Add(u"v%1"_s.arg(root->Count()))->Childs()->Add(value);
    }
    return root;
}

QString Reference(int number) {
    return u"${v%1}"_s.arg(number);
}

TEST(ExpansionTest, NoDocumentIsTooMuch) {
    const auto expand = [](int count, const std::function<QString(int)>& value,
                           const QString& text) {
        QStringList values;
        while (values.size() < count) {
            values += value(static_cast<int>(values.size()));
        }
        return VariableExpander(*Numbered(values)).Expand(text);
    };
    const QString first = Reference(0);
    const int many = 35000;
    const qsizetype tooLong = VariableExpander::TooLongLength();
    const auto chain = [=](int each) { return u"x"_s + Reference(each + 1); };
    const auto ring = [=](int each) { return Reference((each + 1) % many) + u"x"_s; };
    EXPECT_EQ(expand(many, chain, first), QString(many, u'x'));
    EXPECT_EQ(expand(many, ring, first + Reference(9)), QString(many, u'x').repeated(2));
    for (const auto& [end, length] : {std::pair("", qsizetype(1)), {"x", tooLong}}) {
        const auto doubling = [last = QString::fromUtf8(end)](int each) {
            return each == 39 ? last : Reference(each + 1).repeated(2);
        };
        EXPECT_EQ(expand(40, doubling, first + u"y"_s).size(), length) << end;
    }
    // In circles every way leaves out other variables, and there are too many ways to go them all.
    const auto circles = [](int each) {
        return each >= 38 ? Reference(0) : Reference(each + 1) + Reference(each + 2);
    };
    EXPECT_EQ(expand(40, circles, first).size(), tooLong);
}

TEST(ExpansionTest, WhatARunKeepsIsLimited) {
    const auto variables = Numbered({QString(100'000, u'x'), QString(3'000'000, u'y')});
    VariableExpander expander(*variables);
    // What is too long for any program is one text for all, and tells that it was cut off.
    const QString tooLong = expander.Expand(u"${v1}${V1}"_s);
    EXPECT_EQ(tooLong.size(), VariableExpander::TooLongLength());
    EXPECT_TRUE(tooLong.startsWith(u"yy") && tooLong.endsWith(u"y…"));
    EXPECT_EQ(expander.Expand(u"a${v1}${v1}"_s).constData(), tooLong.constData());
    // So much new text that the rest of the run gets none.
    int made = 0;
    while (made < 10000 && expander.Expand(u"${v0}y"_s).size() == 100'001) {
        ++made;
    }
    EXPECT_TRUE(made > 500 && made < 2000) << made;
    EXPECT_EQ(expander.Expand(u"no reference"_s).toStdString(), "no reference");
}

} // namespace
