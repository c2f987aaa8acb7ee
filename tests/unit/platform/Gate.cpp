#include "Gate.hpp"

#include <array>
#include <cstddef>

#include <fcntl.h>
#include <unistd.h>

using HostBoard::UniqueFd;

Gate::Gate() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) == 0) {
        waiting = UniqueFd(ends[0]);
        held = UniqueFd(ends[1]);
    }
}

void Gate::pass() {
    open();
    std::byte none{};
    while (::read(waiting.get(), &none, 1) == -1 && errno == EINTR) {
    }
}
