#include "PeerCatalog.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>

#include "DumpPeer.hpp"
#include "FastPathNetlink.hpp"
#include "HeartbeatStatus.hpp"
#include "InterfaceTable.hpp"
#include "LiveTraffic.hpp"
#include "ManagedInterfaces.hpp"
#include "MessageText.hpp"
#include "MmiPeer.hpp"
#include "NetfpMasterPeer.hpp"
#include "NetfpState.hpp"
#include "NetlinkPeer.hpp"
#include "SmLogPeer.hpp"
#include "StateFilePeer.hpp"
#include "StateTree.hpp"
#include "SystemLogPeer.hpp"

namespace Boardsim {
namespace {

constexpr FaultTopic requestTopic{"answers to requests on /tmp/NetfpMaster", NetfpMasterPeer::faultKinds};
constexpr FaultTopic dumpTopic{"dumps to /tmp/PEER.log", DumpPeer::faultKinds};
constexpr FaultTopic mmiTopic{"MMI replies", MmiPeer::faultKinds};
constexpr FaultTopic netlinkTopic{"netlink answers", NetlinkPeer::faultKinds};

constexpr std::array masterFaults{FaultGroup{"", &requestTopic}, FaultGroup{"dump-", &dumpTopic}};
constexpr std::array dumpFaults{FaultGroup{"", &dumpTopic}};
constexpr std::array proxyFaults{FaultGroup{"", &dumpTopic}, FaultGroup{"netlink-", &netlinkTopic}};
constexpr std::array dispatcherFaults{FaultGroup{"", &mmiTopic}, FaultGroup{"netlink-", &netlinkTopic}};

/// make_unique() results cannot be copied into an initializer list.
template <typename... Each>
Peers makePeers(Each... each) {
    Peers peers;
    (peers.push_back(std::move(each)), ...);
    return peers;
}

std::shared_ptr<LiveTraffic> trafficOf(const Scenario& scenario) {
    return std::make_shared<LiveTraffic>(scenario);
}

NetlinkPeer::Service heartbeatService(const std::string& name, std::shared_ptr<LiveTraffic> traffic,
                                      std::uint32_t requestType, std::uint32_t responseType) {
    return {requestType, sizeof(FastPath_HeartbeatReq), responseType,
            [status = HeartbeatStatus(name, std::move(traffic))](std::string_view /*payload*/) {
                return status.value();
            },
            [](std::string_view /*payload*/) { return std::string("heartbeat"); }};
}

NetlinkPeer::Service addInterfaceService(std::shared_ptr<ManagedInterfaces> interfaces) {
    return {FASTPATH_ADD_INTERFACE_REQ, sizeof(NetfpProxy_AddInterfaceReq), FASTPATH_ADD_INTERFACE_RESP,
            [list = std::move(interfaces)](std::string_view payload) {
                return list->add(payload.substr(offsetof(NetfpProxy_AddInterfaceReq, interfaceName)));
            },
            [](std::string_view payload) {
                NetfpProxy_AddInterfaceReq request{};
                std::memcpy(&request, payload.data(), sizeof request);
                return "add interface " + fieldText(request.interfaceName);
            }};
}

std::unique_ptr<Peer> makeDumpPeer(const Scenario& scenario, const std::string& name,
                                   std::string (*describe)(const SystemState* state)) {
    return std::make_unique<DumpPeer>(
        name, [traffic = trafficOf(scenario), describe] { return describe(traffic->system()); },
        faultFor(scenario, name, dumpFaults[0]));
}

Peers buildMaster(const Scenario& scenario) {
    const std::string name = "netfp_master";
    auto table = std::make_shared<InterfaceTable>();
    return makePeers(std::make_unique<NetfpMasterPeer>(table, faultFor(scenario, name, masterFaults[0])),
                     std::make_unique<DumpPeer>(
                         name, [table] { return table->text(); }, faultFor(scenario, name, masterFaults[1])));
}

Peers buildProxy(const Scenario& scenario) {
    const std::string name = "netfp_proxy";
    auto interfaces = std::make_shared<ManagedInterfaces>();
    const std::shared_ptr<LiveTraffic> traffic = trafficOf(scenario);
    std::vector<NetlinkPeer::Service> services{
        heartbeatService(name, traffic, FASTPATH_NETFP_PROXY_HEARTBEAT_REQ,
                         FASTPATH_NETFP_PROXY_HEARTBEAT_RESP),
        addInterfaceService(interfaces)};
    return makePeers(
        std::make_unique<DumpPeer>(
            name, [interfaces, traffic] { return netfpProxyState(traffic->system()) + interfaces->text(); },
            faultFor(scenario, name, proxyFaults[0])),
        std::make_unique<NetlinkPeer>(name, FASTPATH_NETFP_PROXY_PORT_ID, std::move(services),
                                      faultFor(scenario, name, proxyFaults[1])));
}

Peers buildServer(const Scenario& scenario) {
    return makePeers(makeDumpPeer(scenario, "netfp_server", netfpServerState),
                     std::make_unique<SmLogPeer>(SmLogPeer::systemLibrary, "netfp_server", scenario));
}

Peers buildResourceManager(const Scenario& scenario) {
    return makePeers(makeDumpPeer(scenario, "resmgr_server", resourceManagerState));
}

Peers buildDispatcher(const Scenario& scenario, const std::string& instance, std::uint16_t port,
                      std::uint32_t portId) {
    const std::string name = instance + "_dispatcher";
    const std::shared_ptr<LiveTraffic> traffic = trafficOf(scenario);
    const StateTree tree(instance, traffic);
    const auto statistics = std::make_shared<QosStatistics>(instance, traffic);
    std::vector<NetlinkPeer::Service> services{heartbeatService(
        name, traffic, FASTPATH_DISPATCHER_HEARTBEAT_REQ, FASTPATH_DISPATCHER_HEARTBEAT_RESP)};
    Peers peers = makePeers(std::make_unique<MmiPeer>(instance, port, traffic, statistics,
                                                      faultFor(scenario, name, dispatcherFaults[0])),
                            std::make_unique<NetlinkPeer>(name, portId, std::move(services),
                                                          faultFor(scenario, name, dispatcherFaults[1])),
                            std::make_unique<SmLogPeer>(SmLogPeer::dispatcher, name, scenario));
    if (traffic->clock() != nullptr) {
        peers.push_back(std::make_unique<StateFilePeer>(tree, statistics, *traffic->clock()));
    }
    return peers;
}

Peers buildIwfDispatcher(const Scenario& scenario) {
    return buildDispatcher(scenario, "iwf", 7777, FASTPATH_IWF_DISPATCHER_PORT_ID);
}

Peers buildSfnDispatcher(const Scenario& scenario) {
    return buildDispatcher(scenario, "sfn", 8777, FASTPATH_SFN_DISPATCHER_PORT_ID);
}

Peers buildSystemLog(const Scenario& /*scenario*/) {
    return makePeers(std::make_unique<SystemLogPeer>());
}

bool always(Deployment /*deployment*/) {
    return true;
}

constexpr std::array catalog{
    PeerEntry{"system_log", "receives the records sent to /dev/log", always, {}, buildSystemLog},
    PeerEntry{
        "netfp_master",
        "answers requests on /tmp/NetfpMaster (eth0 to eth3 are the switch ports 1 to 4); mirrors ports, "
        "renames interfaces, keeps multicast filters; dumps its table",
        always, masterFaults, buildMaster},
    PeerEntry{"netfp_proxy",
              "answers heartbeats and add-interface requests on netlink port id 110; dumps its state and the "
              "interfaces that it manages",
              always, proxyFaults, buildProxy},
    PeerEntry{"netfp_server", "dumps its state; writes to the log syslib_log_memory", always, dumpFaults,
              buildServer},
    PeerEntry{"resmgr_server", "dumps its state", always, dumpFaults, buildResourceManager},
    PeerEntry{
        "iwf_dispatcher",
        "answers heartbeats on netlink port id 120 and MMI commands on UDP port 7777; publishes state files "
        "under /tmp/fuse/iwf; writes to the log dispatcher_log_memory",
        hasIwf, dispatcherFaults, buildIwfDispatcher},
    PeerEntry{"sfn_dispatcher", "the same, with netlink port id 130, UDP port 8777 and /tmp/fuse/sfn", hasSfn,
              dispatcherFaults, buildSfnDispatcher},
};

}  // namespace

std::span<const PeerEntry> peerCatalog() {
    return catalog;
}

const PeerEntry* findPeer(std::string_view name) {
    const auto* row = std::ranges::find(catalog, name, &PeerEntry::name);
    return row == catalog.end() ? nullptr : &*row;
}

}  // namespace Boardsim
