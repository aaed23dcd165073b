#include "system/OpenStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace rivenfall {

void OpenStandardStreams() {
    int descriptor = 0;
    do {
        descriptor = open("/dev/null", O_RDONLY);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    close(descriptor);
}

} // namespace rivenfall
