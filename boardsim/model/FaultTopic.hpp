#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Fault.hpp"
#include "Scenario.hpp"

namespace Boardsim {

/// A function of the board's processes, and the kinds of fault that it can have.
struct FaultTopic {
    std::string_view title;  ///< completes "Faults of ..."
    std::vector<FaultKind> (*kinds)();
};

/// The faults of one function of one process. A prefix separates them from the faults of its other functions.
struct FaultGroup {
    std::string_view prefix;
    const FaultTopic* topic;

    std::vector<FaultKind> kinds() const { return topic->kinds(); }

    /// The kind with this name, which includes the prefix.
    std::optional<FaultKind> findKind(std::string_view name) const;
};

/// The last of the scenario's faults of `peer` in `group`, without the group's prefix.
Fault faultFor(const Scenario& scenario, std::string_view peer, const FaultGroup& group);

}  // namespace Boardsim
