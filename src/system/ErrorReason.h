#pragma once

#include <QString>

namespace rivenfall {

/// What the operating system says of the error number @p error, in the user's language.
QString ReasonOf(int error);

} // namespace rivenfall
