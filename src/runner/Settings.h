#pragma once

#include <QString>

#include <utility>
#include <vector>

namespace rivenfall {

class DataNodes;

/// Gives each variable of the root @p variables that @p settings names the value that stands there,
/// whatever is switched on; of several, the last setting of a name holds. Names are compared as
/// those of references are. Gives the reason of a failure as a sentence; empty for success.
QString ApplySettings(const std::vector<std::pair<QString, QString>>& settings,
                      const DataNodes& variables);

} // namespace rivenfall
