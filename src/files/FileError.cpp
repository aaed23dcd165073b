#include "files/FileError.h"

#include <algorithm>
#include <cstring>

namespace rivenfall {

FileError FileErrorOf(int number) {
    return {QString::fromLocal8Bit(std::strerror(number)), number};
}

bool IsRefusal(const FileError& error) {
    constexpr int Refusals[] = {EACCES, EPERM, EROFS, EBUSY, EINVAL, ENOTSUP, ENOSYS};
    return std::find(std::begin(Refusals), std::end(Refusals), error.Number) != std::end(Refusals);
}

} // namespace rivenfall
