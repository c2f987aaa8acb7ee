#include "PeerCatalog.hpp"

#include <algorithm>
#include <array>
#include <string>

#include "DumpPeer.hpp"
#include "InterfaceTable.hpp"
#include "MmiPeer.hpp"
#include "NetfpMasterPeer.hpp"
#include "NetfpState.hpp"
#include "PeerFaults.hpp"
#include "SmLogPeer.hpp"
#include "StateTree.hpp"
#include "SystemLogPeer.hpp"

namespace {

constexpr std::array masterFaults{
    FaultGroup{"", NetfpMasterPeer::faultKinds},
    FaultGroup{"dump-", DumpPeer::faultKinds},
};
constexpr std::array dumpFaults{FaultGroup{"", DumpPeer::faultKinds}};
constexpr std::array mmiFaults{FaultGroup{"", MmiPeer::faultKinds}};

/// A list of peers from the peers themselves, which an initializer list could only copy.
template <typename... Each>
Peers together(Each... each) {
    Peers peers;
    (peers.push_back(std::move(each)), ...);
    return peers;
}

std::unique_ptr<Peer> makeDumpPeer(const Scenario& scenario, const std::string& name,
                                   std::string (*state)()) {
    return std::make_unique<DumpPeer>(name, state, faultFor(scenario, name, dumpFaults[0]));
}

Peers buildMaster(const Scenario& scenario) {
    const std::string name = "netfp_master";
    auto table = std::make_shared<InterfaceTable>();
    return together(std::make_unique<NetfpMasterPeer>(table, faultFor(scenario, name, masterFaults[0])),
                    std::make_unique<DumpPeer>(
                        name, [table] { return table->text(); }, faultFor(scenario, name, masterFaults[1])));
}

Peers buildProxy(const Scenario& scenario) {
    return together(makeDumpPeer(scenario, "netfp_proxy", netfpProxyState));
}

Peers buildServer(const Scenario& scenario) {
    return together(makeDumpPeer(scenario, "netfp_server", netfpServerState),
                    std::make_unique<SmLogPeer>(SmLogPeer::systemLibrary, "netfp_server"));
}

Peers buildResourceManager(const Scenario& scenario) {
    return together(makeDumpPeer(scenario, "resmgr_server", resourceManagerState));
}

Peers buildDispatcher(const Scenario& scenario, const std::string& instance, std::uint16_t port) {
    const std::string name = instance + "_dispatcher";
    writeStateTree(instance);
    return together(std::make_unique<MmiPeer>(instance, port, faultFor(scenario, name, mmiFaults[0])),
                    std::make_unique<SmLogPeer>(SmLogPeer::dispatcher, name));
}

Peers buildIwfDispatcher(const Scenario& scenario) {
    return buildDispatcher(scenario, "iwf", 7777);
}

Peers buildSfnDispatcher(const Scenario& scenario) {
    return buildDispatcher(scenario, "sfn", 8777);
}

Peers buildSystemLog(const Scenario& /*scenario*/) {
    return together(std::make_unique<SystemLogPeer>());
}

bool always(Deployment /*deployment*/) {
    return true;
}
bool whereIwfIs(Deployment deployment) {
    return deployment != Deployment::sfnAntenna;
}
bool whereSfnIs(Deployment deployment) {
    return deployment != Deployment::iwf;
}

constexpr std::array catalog{
    PeerEntry{"system_log", always, {}, buildSystemLog},
    PeerEntry{"netfp_master", always, masterFaults, buildMaster},
    PeerEntry{"netfp_proxy", always, dumpFaults, buildProxy},
    PeerEntry{"netfp_server", always, dumpFaults, buildServer},
    PeerEntry{"resmgr_server", always, dumpFaults, buildResourceManager},
    PeerEntry{"iwf_dispatcher", whereIwfIs, mmiFaults, buildIwfDispatcher},
    PeerEntry{"sfn_dispatcher", whereSfnIs, mmiFaults, buildSfnDispatcher},
};

}  // namespace

std::span<const PeerEntry> peerCatalog() {
    return catalog;
}

const PeerEntry* findPeer(std::string_view name) {
    const auto* row = std::ranges::find(catalog, name, &PeerEntry::name);
    return row == catalog.end() ? nullptr : &*row;
}
