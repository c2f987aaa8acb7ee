#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Fault.hpp"
#include "Scenario.hpp"

namespace Boardsim {

/// One thing that processes do, and can do wrongly.
struct FaultTopic {
    std::string_view title;  ///< what the faults are faults of
    std::vector<FaultKind> (*kinds)();
};

/// The faults of one thing that a process does. A process that does two tells their faults apart by what
/// stands in front of the names.
struct FaultGroup {
    std::string_view prefix;
    const FaultTopic* topic;

    std::vector<FaultKind> kinds() const { return topic->kinds(); }

    /// The kind that a scenario calls `name`, if there is one.
    std::optional<FaultKind> findKind(std::string_view name) const;
};

/// The last of the scenario's faults of `peer` that belongs to `group`, without the group's prefix.
Fault faultFor(const Scenario& scenario, std::string_view peer, const FaultGroup& group);

}  // namespace Boardsim
