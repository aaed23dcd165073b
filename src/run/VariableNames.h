#pragma once

#include <QString>

namespace rivenfall {

/// The name of a variable without its case: two names are the same where these are equal.
QString FoldedName(QStringView name);

} // namespace rivenfall
