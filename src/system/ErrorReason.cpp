#include "system/ErrorReason.h"

#include <cstring>

namespace rivenfall {

QString ReasonOf(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace rivenfall
