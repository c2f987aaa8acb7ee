#include "ActionMgr.hpp"

#include <algorithm>

#include "AddInterfaceAction.hpp"
#include "AddMulticastMACAction.hpp"
#include "Console.hpp"
#include "DescriptorDumpAction.hpp"
#include "GetPortAction.hpp"
#include "LoopbackPortAction.hpp"
#include "MemoryDumpAction.hpp"
#include "MirrorPortAction.hpp"
#include "PortSwapAction.hpp"
#include "ResetQoSStatsAction.hpp"

namespace Korvel {

ActionMgr::ActionMgr() : IManager("Action") {
    actions.push_back(std::make_unique<GetPortAction>());
    actions.push_back(std::make_unique<MirrorPortAction>());
    actions.push_back(std::make_unique<LoopbackPortAction>());
    actions.push_back(std::make_unique<PortSwapAction>());
    actions.push_back(std::make_unique<AddMulticastMACAction>());
    actions.push_back(std::make_unique<ResetQoSStatsAction>());
    actions.push_back(std::make_unique<MemoryDumpAction>());
    actions.push_back(std::make_unique<DescriptorDumpAction>());
    actions.push_back(std::make_unique<AddInterfaceAction>());
}

bool ActionMgr::detectKeywords(int argc, char** argv) {
    if (argc < 2) {
        return false;
    }
    progress("Looking up Action keyword \"", argv[1], "\"");
    return find(argv[1]) != nullptr;
}

bool ActionMgr::resolveRequest(int argc, char** argv) {
    SimpleAction* const action = find(argv[1]);
    if (action == nullptr) {
        return false;
    }
    progress("Executing \"", action->getKeyword(), "\" action");
    return action->run(argc, argv);
}

void ActionMgr::printHelpMsg(const std::string& indent, const std::string& programName) {
    print("  Actions:\n");
    for (const auto& action : actions) {
        print(indent, "==============\n");
        action->printHelpMsg(indent + "  ", programName);
    }
}

SimpleAction* ActionMgr::find(const std::string& keyword) const {
    const auto action = std::find_if(actions.begin(), actions.end(), [&](const auto& candidate) {
        return candidate->getKeyword() == keyword;
    });
    return action == actions.end() ? nullptr : action->get();
}

}  // namespace Korvel
