#include "ResponseReceiver.hpp"

#include <span>

#include "Console.hpp"
#include "DatagramSocket.hpp"

namespace Korvel {

Deadline deadlineInX100(unsigned timeout) {
    constexpr std::chrono::milliseconds unit{100};
    return timeout == 0 ? Deadline{} : deadlineIn(unit * timeout);
}

ResponseResult receiveResponse(int socket, const Deadline& deadline, const ResponseTest& accepts,
                               NetfpMaster_Response& response) {
    do {
        NetfpMaster_Response datagram{};
        std::size_t size = 0;
        switch (receiveDatagram(socket, std::as_writable_bytes(std::span(&datagram, 1)), deadline, size)) {
            case Arrival::timedOut:
                return ResponseResult::timedOut;
            case Arrival::waitFailed:
            case Arrival::receiveFailed:
                failErrnoNumber("Failed to receive from Linux Socket: ");
                return ResponseResult::failed;
            case Arrival::datagram:
                break;
        }
        if (accepts(datagram, size)) {
            response = datagram;
            return ResponseResult::received;
        }
    } while (!hasPassed(deadline));
    return ResponseResult::timedOut;
}

}  // namespace Korvel
