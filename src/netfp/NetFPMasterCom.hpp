#pragma once

#include <cstdint>
#include <string>

#include "NetfpMaster.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// Client of the NetFP master: sends one request at a time from a bound UNIX datagram socket, and receives
/// the response with the same identifier. Owns the descriptor. The socket file remains after close() and is
/// replaced by the next connect() to the same path, of any process. Functions that fail report it on standard
/// error and return false.
class NetFPMasterCom {
public:
    /// Examines a response with error code 0; returns true to accept it.
    using ResponseCallback = bool (*)(NetfpMaster_Response*);

    NetFPMasterCom();
    NetFPMasterCom(const NetFPMasterCom&) = delete;
    NetFPMasterCom& operator=(const NetFPMasterCom&) = delete;
    NetFPMasterCom(NetFPMasterCom&&) = delete;
    NetFPMasterCom& operator=(NetFPMasterCom&&) = delete;
    ~NetFPMasterCom();

    /// Creates the client socket and binds it. Returns true immediately if it is already connected.
    bool connect();

    /// Closes the client socket. Returns false only if closing fails. If the socket is not connected, reports
    /// that.
    bool close();

    /// Writes the identifier into the request and sends it. Requires a successful connect(). A null request
    /// fails with EFAULT.
    bool sendNetFPRequest(NetfpMaster_Request* request);

    /// Waits up to getTimeout() for the response to the last request. Returns true if its error code is 0 and
    /// `callback`, unless null, accepts it. A time-out is not reported; the next request then gets a new
    /// identifier.
    bool receiveNetFpResponse(ResponseCallback callback);

    /// Returns the switch port of a Linux interface, or -1 if the request fails. Names are truncated to 32
    /// bytes.
    int getSwitchPortForInterface(const std::string& interfaceName);

    /// Enables or disables mirroring of one direction between two switch ports. Port numbers are truncated to
    /// their low 8 bits.
    bool setPortMirroring(bool enable, Netfp_Direction direction, int fromPort, int toPort);

    static void setMasterSocketPath(const std::string& path);
    static std::string getMasterSocketPath();
    static void setClientSocketPath(const std::string& path);
    static std::string getClientSocketPath();

    /// The time-out for a response, in units of 100 ms; 0 waits without limit.
    static void setTimeout(unsigned timeoutX100);
    static unsigned getTimeout();

    static bool alwaysTrueCallback(NetfpMaster_Response* response);
    static bool getSwitchPortForInterfaceCallback(NetfpMaster_Response* response);

private:
    /// Descriptor 0 is never a connected socket.
    bool isConnected() const { return socketFd.get() >= 1; }
    /// Returns true if this is the response to the last request. In verbose mode, prints its identifier and
    /// error code.
    bool matches(const NetfpMaster_Response& response) const;

    Base::UniqueFd socketFd;
    std::uint32_t requestId;

    static std::string _masterSocketPath;
    static std::string _clientSocketPath;
    static std::uint32_t _requestTimeoutX100;
    static std::int32_t _getIfResponsePortNumber;
};

}  // namespace Korvel
