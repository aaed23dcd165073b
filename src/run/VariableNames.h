#pragma once

#include <QString>

#include <unordered_map>

namespace rivenfall {

class DataNodes;

/// The index of a document's variables by their names, as references find them: the first active
/// variable of a name, compared without regard to case.
class VariableNames {
public:
    /// Indexes the active ones of @p variables, which don't change while the object lives.
    explicit VariableNames(const DataNodes& variables);

    /// The position of the variable @p name among all variables, from 0, or NoVariable.
    int IndexOf(QStringView name) const;

    static constexpr int NoVariable = -1;

private:
    /// The same for all names that differ in case only.
    struct Hash {
        size_t operator()(QStringView name) const;
    };
    struct Equal {
        bool operator()(QStringView left, QStringView right) const;
    };

    std::unordered_map<QStringView, int, Hash, Equal> pobjPositions;
};

} // namespace rivenfall
