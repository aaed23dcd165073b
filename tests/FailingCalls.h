#pragma once

#include <functional>
#include <string>

namespace rivenfall {

/// While it lives, whatever asks the kernel about files in this program asks it first: it gets the
/// call's name and gives the error number that the call is to fail with, or 0. No sync reaches the
/// disk. An opening of a file without a name is told as "O_TMPFILE".
class FailingCalls {
public:
    explicit FailingCalls(std::function<int(const std::string& name)> error);
    ~FailingCalls();

    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
};

} // namespace rivenfall
