#pragma once

#include <QString>

namespace rivenfall {

/// @p Text with its references replaced by the values of the open document's variables, as
/// VariableExpander does it. For a text by itself; a run keeps one expander for all its texts.
QString ExpandVariables(const QString& Text);

} // namespace rivenfall
