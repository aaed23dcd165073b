#include "support/SupportLibrary.h"

namespace rivenfall {

StringList SupportLibrary::CommandLineList() {
    return {};
}

bool SupportLibrary::IsArrayEmpty(const std::vector<bool>& Array) {
    return Array.empty();
}

} // namespace rivenfall
