// The system's own headers would have more to say about the functions that stand here in the place
// of theirs.
#include "FailingCalls.h"

#include <cerrno>
#include <dlfcn.h>
#include <utility>

namespace {

std::function<int(const std::string&)> ErrorOf;
bool Armed = false;
int Copy = -1;

bool Fails(const char* name) {
    if (!std::exchange(Armed, false)) {
        return false;
    }
    const int error = ErrorOf(name);
    Armed = true;
    errno = error != 0 ? error : errno;
    return error != 0;
}

/// What the kernel's call itself gives. All that a call takes are words.
template <typename... Words>
long Real(const char* name, Words... words) {
    return reinterpret_cast<long (*)(Words...)>(dlsym(RTLD_NEXT, name))(words...);
}

} // namespace

// The names are those of the calls.
// NOLINTBEGIN(readability-identifier-naming)

#define CALL(Name)                                                                                 \
    extern "C" long Name(long a, long b, long c, long d, long e) {                                 \
        return Fails(#Name) ? -1 : Real(#Name, a, b, c, d, e);                                     \
    }

CALL(fstat)
CALL(readlinkat)
CALL(pread)
CALL(pwrite)
CALL(ftruncate)
CALL(fchown)
CALL(fchmod)
CALL(flistxattr)
CALL(fgetxattr)
CALL(fsetxattr)
CALL(fremovexattr)
CALL(linkat)
CALL(unlinkat)
CALL(syncfs)

extern "C" int renameat(int at, const char* from, int folder, const char* to) noexcept {
    return Fails("renameat") ? -1 : static_cast<int>(Real("renameat", at, from, folder, to));
}

extern "C" long openat(long a, long b, long c, long d) {
    constexpr long Unnamed = 020000000;
    return Fails((c & Unnamed) != 0 ? "O_TMPFILE" : "openat") ? -1 : Real("openat", a, b, c, d);
}

/// A disk takes its time for a sync; nobody takes the power away here.
extern "C" long fsync(long a) {
    const bool armed = Armed;
    return Fails("fsync") ? -1 : armed ? 0 : Real("fsync", a);
}

extern "C" long dup(long a) {
    return Fails("dup") ? -1 : Copy = static_cast<int>(Real("dup", a));
}

/// Closes in any case, as the kernel does. Only a copy's closing is for what it tells.
extern "C" long close(long a) {
    const long result = Real("close", a);
    return static_cast<int>(a) == Copy && Fails("close") ? -1 : result;
}

// NOLINTEND(readability-identifier-naming)

namespace rivenfall {

FailingCalls::FailingCalls(std::function<int(const std::string&)> error) {
    ErrorOf = std::move(error);
    Armed = true;
}

FailingCalls::~FailingCalls() {
    Armed = false;
}

} // namespace rivenfall
