#pragma once

#include <string>
#include <vector>

#include <netinet/in.h>

#include "Configuration.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// UDP exchange with the MMI service of one dispatcher instance: a command out, text datagrams back up to
/// the end-of-message marker. Every failure is reported on standard error.
class MmiChannel {
public:
    /// `config` is used for as long as the channel is.
    explicit MmiChannel(const Configuration::Config& config);

    /// Creates the socket and binds it to the instance's local port.
    bool open();

    /// Closes the socket. A channel that is not closed so is closed silently.
    void close();

    /// Sends `command` and appends what comes back to `reply`, which must be empty. False where sending
    /// fails. The wait ends with the marker, after half a second of silence, or, for a reply that never
    /// ends, at `sizeLimit` bytes or 60 s; what arrived is kept, whichever it was.
    bool query(const std::string& command, std::string& reply, std::size_t sizeLimit);

private:
    bool setDestination();
    bool bindLocalPort();
    bool send(const std::string& command);
    /// Receives one datagram as text. False at the end of the reply, for whatever reason.
    bool receiveChunk(std::string& chunk);

    const Configuration::Config& settings;
    Base::UniqueFd socket;
    sockaddr_in destination{};
    std::vector<char> receiveBuffer;
};

}  // namespace Korvel
