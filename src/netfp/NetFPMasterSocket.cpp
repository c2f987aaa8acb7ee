#include "NetFPMasterSocket.hpp"

#include <algorithm>

#include <unistd.h>

#include "Console.hpp"
#include "DatagramSocket.hpp"
#include "ResponseReceiver.hpp"
#include "UnixAddress.hpp"

namespace Korvel {

int connectAndBindToLinuxSocket(const std::string& path) {
    progress("Opening Linux Socket for response from server");
    Base::UniqueFd socket = openDatagramSocket(AF_UNIX);
    if (!socket) {
        failErrnoNumber("Socket Creation Failed: ");
        return -1;
    }
    ::unlink(path.c_str());
    progress("Binding to Linux client Socket \"", path, "\"");
    if (!bindToPath(socket.get(), path)) {
        failErrnoNumber("Failed to Bind to Linux Socket: ");
        return -1;
    }
    return socket.release();
}

bool sendNetFPRequest(int fd, const std::string& path, NetfpMaster_Request* request) {
    return sendToPath(fd, path, request, sizeof *request) ||
           failErrnoNumber("Failed to Send to Linux Socket: ");
}

bool receiveNetFpResponse(int fd, NetfpMaster_Response* response, unsigned id, int retries) {
    if (response == nullptr) {
        errno = EFAULT;
        return failErrnoNumber("Failed to receive from Linux Socket: ");
    }
    constexpr std::size_t minimumSize = offsetof(NetfpMaster_Response, errorCode);
    const auto answersRequest = [id](const NetfpMaster_Response& datagram, std::size_t size) {
        return size >= minimumSize && datagram.requestId == id;
    };
    const Deadline deadline = deadlineInX100(static_cast<unsigned>(std::max(retries, 0)));
    return receiveResponse(fd, deadline, answersRequest, *response) == ResponseResult::received;
}

}  // namespace Korvel
