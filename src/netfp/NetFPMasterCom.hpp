#pragma once

#include <cstdint>
#include <string>

#include "NetfpMaster.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// Client of the NetFP master: one request at a time out of a bound UNIX datagram socket, and the response
/// with the same identifier back.
/// Owns the descriptor; the socket's file stays behind and is replaced by the next connect() to the same
/// path, of this process or another. Every failure is reported on standard error and false.
class NetFPMasterCom {
public:
    /// Judges a response whose error code is 0; true accepts it.
    using ResponseCallback = bool (*)(NetfpMaster_Response*);

    NetFPMasterCom();
    NetFPMasterCom(const NetFPMasterCom&) = delete;
    NetFPMasterCom& operator=(const NetFPMasterCom&) = delete;
    NetFPMasterCom(NetFPMasterCom&&) = delete;
    NetFPMasterCom& operator=(NetFPMasterCom&&) = delete;
    ~NetFPMasterCom();

    /// Creates the client socket and binds it. True at once where that was done before.
    bool connect();

    /// Closes the client socket; false only where closing fails. One that is not connected is reported.
    bool close();

    /// Stamps the identifier into the request and sends it. Needs a connect() that succeeded. A null request
    /// fails as a bad address.
    bool sendNetFPRequest(NetfpMaster_Request* request);

    /// Waits up to getTimeout() for the response to the last request and judges it: error code 0, and
    /// `callback`, where there is one, accepts. Running out of time is not reported; the next request then
    /// has a new identifier.
    bool receiveNetFpResponse(ResponseCallback callback);

    /// The switch port behind a Linux interface; -1 where the master does not tell. Of a name, the first 32
    /// bytes count.
    int getSwitchPortForInterface(const std::string& interfaceName);

    /// Switches mirroring of one direction between two switch ports, of whose numbers the low 8 bits count.
    bool setPortMirroring(bool enable, Netfp_Direction direction, int fromPort, int toPort);

    static void setMasterSocketPath(const std::string& path);
    static std::string getMasterSocketPath();
    static void setClientSocketPath(const std::string& path);
    static std::string getClientSocketPath();

    /// The wait for a response, in units of 100 ms; 0 waits without limit.
    static void setTimeout(unsigned timeoutX100);
    static unsigned getTimeout();

    static bool alwaysTrueCallback(NetfpMaster_Response* response);
    static bool getSwitchPortForInterfaceCallback(NetfpMaster_Response* response);

private:
    /// Below 1 is not connected: descriptor 0 is never a connected socket.
    bool isConnected() const { return socketFd.get() >= 1; }
    /// Whether this answers the last request. Tells both in verbose mode.
    bool matches(const NetfpMaster_Response& response) const;

    Base::UniqueFd socketFd;
    std::uint32_t requestId;

    static std::string _masterSocketPath;
    static std::string _clientSocketPath;
    static std::uint32_t _requestTimeoutX100;
    static std::int32_t _getIfResponsePortNumber;
};

}  // namespace Korvel
