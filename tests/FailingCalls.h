#pragma once

#include <string>

namespace rivenfall {

/// While it lives, a call of the kernel about files fails, in this whole program: the call number
/// @p number from now on, counted from 1, and with @p lasting every later one. No sync reaches the
/// disk.
class FailingCalls {
public:
    FailingCalls(int number, int error, bool lasting = false);
    ~FailingCalls();

    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    /// The name of the first call that failed; empty if none did.
    std::string First() const;

    /// The names of all calls until now, without anything between them.
    const std::string& Calls() const;
};

} // namespace rivenfall
