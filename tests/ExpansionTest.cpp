#include "CoreHarness.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableExpander.h"

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
    const auto variables = Variables(
        "A(x),B(${A}y),!C(c1),D(!d1,d2,d3),E(!e1),F(a${G}b),G(c${F}d),H(h${H}h),!M(m1),M(m2),"
        "N(!n1),N(n2),P($),Жук(beetle),Open(${A),x](bracket)");
    // A text and its expansion, "~" for nothing.
    const QString cases = uR"(~ ~ plain plain ${A} x a${A}b${A}c axbxc ${a} x ${B} xy ${C} ~ ${D} d2
        ${E} ~ ${NOPE} ~ x${NOPE}y xy ${F} acdb ${G} cabd ${H} hh ${F}${F} acdbacdb ${M} m2 ${N} ~
        ${A ${A ${A}-${B x-${B ${A${B} ~ ${A${B}} } }${A}{ }x{ $A $A $${A} $x ${} ~
        ${P}{A} ${A} ${жУК} beetle ${Open}} ${A} ${X]}${X}} bracket})"_s;
    const QStringList words = cases.simplified().replace(u'~', QString()).split(u' ');
    for (int word = 0; word < words.size(); word += 2) {
        EXPECT_EQ(VariableExpander(*variables).Expand(words[word]), words[word + 1])
            << words[word].toStdString();
    }
    EXPECT_EQ(VariableExpander(*variables).Expand(u"${ A }"_s), QString());
    variables->Item(1)->SetValue({});
    EXPECT_EQ(VariableExpander(*variables).Expand(u"${}"_s).toStdString(), "x");
    variables->Clear();
    EXPECT_EQ(VariableExpander(*variables).Expand(u"a${A}b"_s).toStdString(), "ab");
}

} // namespace
