#include "SystemLogRoom.hpp"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>

#include "DatagramSocket.hpp"
#include "Wait.hpp"

namespace Korvel {

bool systemLogHasRoom() {
    constexpr std::chrono::seconds limit{1};
    const UniqueFd probe = openDatagramSocket(AF_UNIX);
    const sockaddr_un address{.sun_family = AF_UNIX, .sun_path = _PATH_LOG};
    // Where there is nothing to connect to, vsyslog() finds that out without waiting.
    return ::connect(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
           waitWritable(probe.get(), deadlineIn(limit)) != Readiness::timedOut;
}

}  // namespace Korvel
