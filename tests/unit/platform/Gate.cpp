#include "Gate.hpp"

#include <array>
#include <cstddef>

#include <fcntl.h>
#include <unistd.h>

Gate::Gate() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) == 0) {
        waiting = Base::UniqueFd(ends[0]);
        held = Base::UniqueFd(ends[1]);
    }
}

void Gate::pass() {
    open();
    std::byte none{};
    while (::read(waiting.get(), &none, 1) == -1 && errno == EINTR) {
    }
}
