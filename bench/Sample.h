#pragma once

#include <QString>

namespace rivenfall {

/// The shape of every measured document: compilers of 100 nodes each on three levels.
constexpr int ParametersPerCompiler = 9;
constexpr int ValuesPerParameter = 10;
constexpr int NodesPerCompiler = 1 + ParametersPerCompiler * (1 + ValuesPerParameter);

/// Calls @p visit(level, text, active) for each node of a document of @p count nodes, which is a
/// multiple of NodesPerCompiler. A node comes before its branch; levels count from 1.
template <typename Visitor>
void VisitSample(int count, Visitor visit) {
    using namespace Qt::StringLiterals;
    for (int compiler = 1; compiler <= count / NodesPerCompiler; ++compiler) {
        visit(1, u"compiler-%1"_s.arg(compiler), true);
        for (int parameter = 1; parameter <= ParametersPerCompiler; ++parameter) {
            visit(2, u"--parameter-%1"_s.arg(parameter), true);
            for (int value = 1; value <= ValuesPerParameter; ++value) {
                visit(3, u"value-%1-%2.c"_s.arg(compiler).arg(value), value == ValuesPerParameter);
            }
        }
    }
}

} // namespace rivenfall
