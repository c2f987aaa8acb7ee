#pragma once

#include <cerrno>
#include <string>
#include <system_error>

/// The result of a system call; where it is -1, an exception that says what failed and why.
template <typename Result>
Result checked(Result result, const std::string& what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

/// Repeats a system call for as long as signals interrupt it.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}
