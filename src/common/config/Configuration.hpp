#pragma once

#include <cstdint>
#include <set>
#include <string>

/// What this run talks to. Written while the driver reads options and the platform's configuration, only
/// read afterwards.
namespace Korvel::Configuration {

enum DispatcherInstance : std::uint32_t { IWF = 0, SFN = 1 };

/// How to reach the MMI service of one dispatcher instance.
struct Config {
    std::uint16_t localPort;          ///< UDP port that replies come to, on any local address
    std::uint16_t dispatcherPort;     ///< UDP port that requests go to
    std::string dispatcherAddress;    ///< IPv4, dotted
    std::uint32_t receiveBufferSize;  ///< bytes that one reply datagram may have
    std::string endOfMessageMarker;   ///< the datagram that ends a reply
};

/// Adds an instance to the selection, which has none at start.
void setDispatcherInstance(DispatcherInstance instance);

/// "iwf" or "sfn"; "unknown" for any other value.
std::string dispInstanceToString(DispatcherInstance instance);

unsigned getInstanceCount();

/// The selected instances in ascending order: IWF before SFN.
std::set<DispatcherInstance>::const_iterator getInstanceBegin();
std::set<DispatcherInstance>::const_iterator getInstanceEnd();

/// The communication record of `instance`, which must be IWF or SFN.
Config& getConfig(DispatcherInstance instance);

/// Allows packages on system shutdown; they are not allowed at start, and nothing takes it back.
void setCollectLogsOnExit();
bool getCollectLogsOnExit();

}  // namespace Korvel::Configuration
