#include "ResponseReceiver.hpp"

#include <sys/socket.h>

#include "Console.hpp"
#include "SystemCall.hpp"

namespace Korvel {
namespace {

Received reportFailure() {
    failErrnoNumber("Failed to receive from Linux Socket: ");
    return Received::failure;
}

}  // namespace

Deadline deadlineInX100(unsigned timeout) {
    constexpr std::chrono::milliseconds unit{100};
    return timeout == 0 ? Deadline{} : deadlineIn(unit * timeout);
}

Received receiveResponse(int socket, const Deadline& deadline, const ResponseTest& accepts,
                         NetfpMaster_Response& response) {
    do {
        switch (waitReadable(socket, deadline)) {
            case Readiness::timedOut:
                return Received::nothing;
            case Readiness::failed:
                return reportFailure();
            case Readiness::ready:
                break;
        }
        NetfpMaster_Response datagram{};
        const ssize_t size =
            uninterrupted([&] { return ::recv(socket, &datagram, sizeof datagram, MSG_DONTWAIT); });
        if (size < 0 && errno != EAGAIN) {
            return reportFailure();
        }
        if (size >= 0 && accepts(datagram, static_cast<std::size_t>(size))) {
            response = datagram;
            return Received::response;
        }
    } while (!hasPassed(deadline));
    return Received::nothing;
}

}  // namespace Korvel
