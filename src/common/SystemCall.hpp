#pragma once

#include <cerrno>

namespace Korvel {

/// Repeats a system call for as long as signals interrupt it. Not for waits: a wait keeps a deadline.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

}  // namespace Korvel
