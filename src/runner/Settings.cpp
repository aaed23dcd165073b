#include "runner/Settings.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"

#include <QStringList>

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

QString NamesOf(const DataNodes& variables) {
    QStringList names;
    for (const std::shared_ptr<DataNode>& variable : variables) {
        names += variable->Value();
    }
    names.removeDuplicates();
    return names.join(u", "_s);
}

} // namespace

QString ApplySettings(const std::vector<std::pair<QString, QString>>& settings,
                      const DataNodes& variables) {
    for (const auto& [name, value] : settings) {
        // Of several variables of a name the first one that is switched on counts, so the first one
        // of all does once it is.
        const auto found =
            std::find_if(variables.begin(), variables.end(), [&name = name](const auto& variable) {
                return variable->Value().compare(name, Qt::CaseInsensitive) == 0;
            });
        if (found == variables.end()) {
            return u"No variable of the document has the name %1. There are: %2."_s.arg(
                name, NamesOf(variables));
        }
        (*found)->SetActive(true);
        (*found)->Childs()->Clear();
        (*found)->Childs()->Add(value);
    }
    return {};
}

} // namespace rivenfall
