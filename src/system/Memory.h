#pragma once

#include <cstddef>

namespace rivenfall {

/// Whether the kernel would give this process @p bytes more of memory. Asked before work that can't
/// be undone where memory runs out in the middle of it.
bool HasMemoryFor(size_t bytes);

} // namespace rivenfall
