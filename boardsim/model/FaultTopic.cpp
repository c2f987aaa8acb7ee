#include "FaultTopic.hpp"

#include <algorithm>

namespace Boardsim {

std::optional<FaultKind> FaultGroup::findKind(std::string_view name) const {
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    const std::vector<FaultKind> known = kinds();
    const auto row = std::ranges::find(known, name.substr(prefix.size()), &FaultKind::name);
    return row == known.end() ? std::nullopt : std::optional(*row);
}

Fault faultFor(const Scenario& scenario, std::string_view peer, const FaultGroup& group) {
    Fault found;
    for (const auto& [name, fault] : scenario.faults) {
        if (name == peer && group.findKind(fault.kind)) {
            found = {fault.kind.substr(group.prefix.size()), fault.number, fault.text};
        }
    }
    return found;
}

}  // namespace Boardsim
