#include "system/Memory.h"

#include <sys/mman.h>

namespace rivenfall {

bool HasMemoryFor(size_t bytes) {
    void* const place =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return place != MAP_FAILED && munmap(place, bytes) == 0;
}

} // namespace rivenfall
