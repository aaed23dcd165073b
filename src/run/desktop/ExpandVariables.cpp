#include "run/desktop/ExpandVariables.h"

#include "app/Application.h"
#include "app/modMain.h"
#include "run/VariableExpander.h"

namespace rivenfall {

QString ExpandVariables(const QString& Text) {
    return VariableExpander(*GlobalApplication()->Variables()).Expand(Text);
}

} // namespace rivenfall
