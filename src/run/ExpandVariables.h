#pragma once

#include <QString>

namespace rivenfall {

/// @p Text with every reference `${NAME}` replaced by the value of that variable: the first active
/// variable of the name, compared without regard to case, and its first active value, expanded in
/// turn. What can't be resolved gives nothing; a reference that is never closed stays as it is; a
/// value that refers to itself is cut off there. Never fails and changes nothing.
QString ExpandVariables(const QString& Text);

} // namespace rivenfall
