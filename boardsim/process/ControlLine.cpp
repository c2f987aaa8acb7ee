#include "ControlLine.hpp"

#include <array>

#include <sys/socket.h>

#include "SystemCall.hpp"

namespace Boardsim {

std::pair<ControlLine, ControlLine> ControlLine::openPair() {
    std::array<int, 2> ends{};
    Base::checked(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), "socketpair");
    return {ControlLine(Base::UniqueFd(ends[0])), ControlLine(Base::UniqueFd(ends[1]))};
}

void ControlLine::send(unsigned char message) const {
    Base::uninterrupted([&] { return ::send(line.get(), &message, 1, MSG_NOSIGNAL); });
}

std::optional<unsigned char> ControlLine::receive() const {
    unsigned char message = 0;
    const auto count = Base::uninterrupted([&] { return ::recv(line.get(), &message, 1, 0); });
    return count == 1 ? std::optional(message) : std::nullopt;
}

}  // namespace Boardsim
