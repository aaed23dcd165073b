// The system's own headers would have more to say about the functions that stand here in the place
// of theirs.
#include "FailingCalls.h"

#include <cerrno>
#include <dlfcn.h>

namespace {

int CallsToGo = 0;
int Error = 0;
bool Lasting = false;
bool Armed = false;
const char* FirstFailed = nullptr;
std::string AllCalls;

bool Fails(const char* name) {
    if (Armed) {
        AllCalls += name;
    }
    if (!Armed || --CallsToGo > 0 || (CallsToGo < 0 && !Lasting)) {
        return false;
    }
    FirstFailed = FirstFailed ? FirstFailed : name;
    errno = Error;
    return true;
}

template <typename Function>
Function Real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

// The names are those of the calls, and the macro makes functions.
// NOLINTBEGIN(readability-identifier-naming, bugprone-macro-parentheses)

#define CALL(Result, Name, Parameters, Arguments)                                                  \
    extern "C" Result Name Parameters {                                                            \
        static const auto real = Real<Result(*) Parameters>(#Name);                                \
        return Fails(#Name) ? -1 : real Arguments;                                                 \
    }

CALL(int, openat, (int at, const char* path, int flags, unsigned mode), (at, path, flags, mode))
CALL(int, stat, (const char* path, void* status), (path, status))
CALL(int, fstat, (int file, void* status), (file, status))
CALL(long, readlink, (const char* path, char* text, unsigned long size), (path, text, size))
CALL(long, pread, (int file, void* bytes, unsigned long size, long at), (file, bytes, size, at))
CALL(long, pwrite, (int file, const void* bytes, unsigned long size, long at),
     (file, bytes, size, at))
CALL(int, fallocate, (int file, int mode, long at, long size), (file, mode, at, size))
CALL(int, ftruncate, (int file, long size), (file, size))
CALL(int, fchown, (int file, unsigned user, unsigned group), (file, user, group))
CALL(int, fchmod, (int file, unsigned mode), (file, mode))
CALL(long, flistxattr, (int file, char* names, unsigned long size), (file, names, size))
CALL(long, fgetxattr, (int file, const char* name, void* value, unsigned long size),
     (file, name, value, size))
CALL(int, fsetxattr, (int file, const char* name, const void* value, unsigned long size, int flags),
     (file, name, value, size, flags))
CALL(int, fremovexattr, (int file, const char* name), (file, name))
CALL(int, renameat, (int at, const char* from, int folder, const char* to), (at, from, folder, to))
CALL(int, renameat2, (int at, const char* from, int folder, const char* to, unsigned flags),
     (at, from, folder, to, flags))
CALL(int, unlinkat, (int at, const char* path, int flags), (at, path, flags))
CALL(int, syncfs, (int file), (file))

/// A disk takes its time for a sync; nobody takes the power away here.
extern "C" int fsync(int file) {
    static const auto real = Real<int (*)(int)>("fsync");
    return Fails("fsync") ? -1 : Armed ? 0 : real(file);
}

/// Closes in any case, as the kernel does. It doesn't fail for a descriptor that stands for a place
/// alone (O_PATH): nothing can have been written by it.
extern "C" int close(int file) {
    static const auto real = Real<int (*)(int)>("close");
    static const auto control = Real<int (*)(int, int, ...)>("fcntl");
    constexpr int GetFlags = 3, PlaceAlone = 010000000;
    const bool fails = (control(file, GetFlags) & PlaceAlone) == 0 && Fails("close");
    const int error = errno, result = real(file);
    errno = fails ? error : errno;
    return fails ? -1 : result;
}

namespace rivenfall {

FailingCalls::FailingCalls(int number, int error, bool lasting) {
    CallsToGo = number;
    Error = error;
    Lasting = lasting;
    FirstFailed = nullptr;
    AllCalls.clear();
    Armed = true;
}

FailingCalls::~FailingCalls() {
    Armed = false;
}

std::string FailingCalls::First() const {
    return FirstFailed ? FirstFailed : "";
}

const std::string& FailingCalls::Calls() const {
    return AllCalls;
}

} // namespace rivenfall

// NOLINTEND(readability-identifier-naming, bugprone-macro-parentheses)
