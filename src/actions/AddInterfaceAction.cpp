#include "AddInterfaceAction.hpp"

#include <chrono>

#include "Console.hpp"
#include "FastPathNetlink.hpp"
#include "Invariant.hpp"
#include "Netlink.hpp"
#include "SmLogs.hpp"

namespace Korvel {
namespace {

constexpr std::chrono::seconds responseTimeout{2};
constexpr std::size_t nameSize = sizeof NetfpProxy_AddInterfaceReq::interfaceName;

using ProxyChannel = Util::Netlink<NetfpProxy_AddInterfaceReq, NetfpProxy_AddInterfaceResp>;

bool isSuccess(const NetfpProxy_AddInterfaceResp& response) {
    if (response.messageType != FASTPATH_ADD_INTERFACE_RESP) {
        print("Netlink communication error, wrong message type: ", response.messageType, '\n');
        return false;
    }
    if (response.status != 0) {
        print("Operation unsuccessful, status reported: ", response.status, '\n');
        return false;
    }
    return true;
}

}  // namespace

const std::string AddInterfaceAction::keyword = "add_interface";

std::string AddInterfaceAction::getKeyword() {
    return keyword;
}

bool AddInterfaceAction::run(int argc, char** argv) {
    logClient = SmLog::getClientInstance(dispatcherLogName, smLogApplication);
    if (!parseParameters(argc, argv)) {
        return false;
    }
    const bool ok = handleRequest();
    print("AddInterface ", interfaceName, ok ? " successful\n" : " failed. Check logs for more info.\n");
    return ok;
}

bool AddInterfaceAction::parseParameters(int argc, char** argv) {
    if (argc != 3) {
        print("Exactly one argument (interface name) required\n");
        return false;
    }
    requireInvariant(argv[1] == keyword, "argv[1] == keyword", "AddInterfaceAction");
    interfaceName = argv[2];
    if (interfaceName.empty() || interfaceName.size() >= nameSize) {
        print("Invalid interface name\n");
        return false;
    }
    return true;
}

bool AddInterfaceAction::handleRequest() {
    NetfpProxy_AddInterfaceReq request{};
    request.messageType = FASTPATH_ADD_INTERFACE_REQ;
    interfaceName.copy(request.interfaceName, nameSize);
    NetfpProxy_AddInterfaceResp response{};
    ProxyChannel proxy(FASTPATH_NETFP_PROXY_PORT_ID, logClient);
    return proxy.open() && proxy.send(request, 0) && proxy.receive(response, responseTimeout) &&
           isSuccess(response);
}

void AddInterfaceAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, " ", programName, " ", keyword, " <interface_name>");
}

}  // namespace Korvel
