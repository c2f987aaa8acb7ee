#pragma once

#include <cerrno>
#include <string>
#include <system_error>

namespace Base {

/// Repeats a system call while signals interrupt it. Not for waits, which must keep a deadline.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Returns the result of a system call. If it is -1, throws std::system_error with errno and `what`.
template <typename Result>
Result checked(Result result, const std::string& what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

}  // namespace Base
