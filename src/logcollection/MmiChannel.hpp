#pragma once

#include <string>
#include <vector>

#include <netinet/in.h>

#include "Configuration.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// UDP exchange with the MMI service of one dispatcher instance: sends a command and receives text datagrams
/// up to the end-of-message marker. Reports every failure on standard error.
class MmiChannel {
public:
    /// `config` must outlive the channel.
    explicit MmiChannel(const Configuration::Config& config);

    /// Creates the socket and binds it to the instance's local port.
    bool open();

    /// Closes the socket and reports a failure. The destructor closes it silently.
    void close();

    /// Sends `command` and appends the reply to `reply`, which must be empty. Returns false if sending fails.
    /// The reply ends with the marker, after 0.5 s without a datagram, or at `sizeLimit` bytes or 60 s. All
    /// received text is kept.
    bool query(const std::string& command, std::string& reply, std::size_t sizeLimit);

private:
    bool setDestination();
    bool bindLocalPort();
    bool send(const std::string& command);
    /// Receives one datagram as text. Returns false at the end of the reply, for any reason.
    bool receiveChunk(std::string& chunk);

    const Configuration::Config& settings;
    Base::UniqueFd socket;
    sockaddr_in destination{};
    std::vector<char> receiveBuffer;
};

}  // namespace Korvel
