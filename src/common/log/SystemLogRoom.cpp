#include "SystemLogRoom.hpp"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>

#include "DatagramSocket.hpp"
#include "SocketAddress.hpp"
#include "Wait.hpp"

namespace Korvel {

bool systemLogHasRoom() {
    static bool stuck = false;
    const std::chrono::seconds limit{stuck ? 0 : 1};
    const Base::UniqueFd probe = openDatagramSocket(AF_UNIX);
    const sockaddr_un address{.sun_family = AF_UNIX, .sun_path = _PATH_LOG};
    // If the connection fails, vsyslog() also fails without waiting.
    stuck = ::connect(probe.get(), Base::genericAddress(address), sizeof address) == 0 &&
            waitWritable(probe.get(), deadlineIn(limit)) == Readiness::timedOut;
    return !stuck;
}

}  // namespace Korvel
