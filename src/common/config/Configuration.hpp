#pragma once

#include <cstdint>
#include <set>
#include <string>

/// The dispatcher instances of this run, and how to reach them. Written only while the program reads its
/// options and the platform's configuration.
namespace Korvel::Configuration {

enum DispatcherInstance : std::uint32_t { IWF = 0, SFN = 1 };

/// How to reach the MMI service of one dispatcher instance.
struct Config {
    std::uint16_t localPort;          ///< UDP port for replies, on any local address
    std::uint16_t dispatcherPort;     ///< UDP port for requests
    std::string dispatcherAddress;    ///< IPv4, dotted decimal
    std::uint32_t receiveBufferSize;  ///< maximum bytes of one reply datagram
    std::string endOfMessageMarker;   ///< contents of the last datagram of a reply
};

/// Adds an instance to the selection, which is initially empty.
void setDispatcherInstance(DispatcherInstance instance);

/// Returns "iwf" or "sfn", or "unknown" for any other value.
std::string dispInstanceToString(DispatcherInstance instance);

unsigned getInstanceCount();

/// The selected instances in ascending order: IWF before SFN.
std::set<DispatcherInstance>::const_iterator getInstanceBegin();
std::set<DispatcherInstance>::const_iterator getInstanceEnd();

/// Returns the settings of `instance`, which must be IWF or SFN.
Config& getConfig(DispatcherInstance instance);

/// Allows packages on system shutdown. Initially they are not allowed; the permission cannot be withdrawn.
void setCollectLogsOnExit();
bool getCollectLogsOnExit();

}  // namespace Korvel::Configuration
