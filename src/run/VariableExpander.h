#pragma once

#include <QString>

#include <vector>

namespace rivenfall {

class DataNodes;

/// Puts the values of variables in the place of references, for the length of one run: the
/// variables may not change meanwhile.
class VariableExpander {
public:
    /// @p variables is the root of the variables and outlives the object.
    explicit VariableExpander(const DataNodes& variables);

    /// @p Text with every reference `${NAME}` replaced by the value of that variable: the first
    /// active variable of the name, compared without regard to case, and its first active value,
    /// expanded in turn. What can't be resolved gives nothing; a reference that is never closed
    /// stays as it is; a value that refers to itself is cut off there. Never fails and changes
    /// nothing.
    QString Expand(const QString& Text);

private:
    QString ReplacementFor(QStringView name);

    const DataNodes& pobjVariables;
    /// Per variable, by its position: its value is being expanded. Without allocation between two
    /// calls from outside.
    std::vector<bool> pblnVariableBusy;
};

} // namespace rivenfall
