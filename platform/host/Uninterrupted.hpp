#pragma once

#include <cerrno>

namespace HostBoard {

/// Repeats a system call for as long as signals interrupt it: a program's signals are to lose no entry and to
/// fail no translation. Not for waits.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

}  // namespace HostBoard
