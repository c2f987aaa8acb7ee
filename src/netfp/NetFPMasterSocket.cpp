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
    UniqueFd socket = openDatagramSocket(AF_UNIX);
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
    const Deadline deadline = deadlineInX100(static_cast<unsigned>(std::max(retries, 0)));
    NetfpMaster_Response received{};
    while (receiveResponse(fd, deadline, responseHeaderSize, received) == Received::response) {
        if (received.requestId == id) {
            *response = received;
            return true;
        }
        if (hasPassed(deadline)) {
            return false;
        }
    }
    return false;
}

}  // namespace Korvel
