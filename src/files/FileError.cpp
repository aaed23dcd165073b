#include "files/FileError.h"

#include "system/ErrorReason.h"

#include <algorithm>

namespace rivenfall {

FileError FileErrorOf(int number) {
    return {ReasonOf(number), number};
}

bool IsRefusal(const FileError& error) {
    constexpr int Refusals[] = {EACCES, EPERM, EROFS, EBUSY, EINVAL, ENOTSUP, ENOSYS};
    return std::find(std::begin(Refusals), std::end(Refusals), error.Number) != std::end(Refusals);
}

} // namespace rivenfall
