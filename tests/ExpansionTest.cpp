#include "CoreHarness.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableExpander.h"

#include <functional>

using namespace rivenfall;

namespace {

/// The root of the variables that an outline tells.
std::unique_ptr<DataNodes> Variables(const char* outline) {
    auto root = std::make_unique<DataNodes>();
    root->SetDataNodesType(NodeKind::Variable);
    for (const Sketch& sketch : Sketches(outline)) {
        const auto variable = root->Add(sketch.Value);
        for (const Sketch& below : sketch.Below) {
            variable->Childs()->Add(below.Value);
        }
        // Each one that is added switches those before it off.
        for (int index = variable->Childs()->Count(); index >= 1; --index) {
            variable->Childs()->Item(index)->SetActive(sketch.Below[size_t(index) - 1].Active);
        }
        variable->SetActive(sketch.Active);
    }
    return root;
}

TEST(ExpansionTest, ReplacesReferences) {
    const auto variables =
        Variables("A(x),!C(c1),D(!d1,d2,d3),E(!e1),F(a${G}b),G(c${F}d),H(h${H}h),!M(m1),M(m2),"
                  "N(!n1),N(n2),P($),Жук𐐨(beetle),ß(sharp),Open(${A),x](bracket)");
    const std::pair<const char*, const char*> cases[] = {
        // What is no reference stays.
        {"$A", "$A"},
        {"${A}-${B", "x-${B"},
        {"$${A}", "$x"},
        // A name has letters of either case, and ends at the first bracket.
        {"${жУК𐐀}${ss}", "beetle"},
        {"${ A }", ""},
        {"${A${B}}", "}"},
        {"${X]}${X}}", "bracket}"},
        {"a${A}b${NOPE}c", "axbc"},
        // References in values stop where they come back to themselves, and make up no new ones.
        {"${F}${G}", "acdbcabd"},
        {"${H}", "hh"},
        {"${P}{A}", "${A}"},
        {"${Open}}", "${A}"},
        // Variables and values that are switched off don't count.
        {"${C}${D}${E}${M}${N}", "d2m2"}};
    for (const auto& [text, expanded] : cases) {
        const QString result = VariableExpander(*variables).Expand(QString::fromUtf8(text));
        EXPECT_EQ(result.toStdString(), expanded) << text;
    }
    variables->Item(1)->SetValue({});
    EXPECT_EQ(VariableExpander(*variables).Expand(u"${}"_s).toStdString(), "x");
}

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
