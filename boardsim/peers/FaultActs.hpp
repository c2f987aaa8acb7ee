#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <thread>
#include <vector>

#include "Fault.hpp"

namespace Boardsim {

/// Bytes of an answer with the fault "oversized"; more than any answer has.
inline constexpr std::size_t oversizedAnswer = 400;

/// One row of a peer's table of faults: the kind, and what the peer then does in place of its duty.
/// The first row of a table has an empty kind and does the duty.
template <typename Act>
struct FaultAct {
    FaultKind kind;
    Act act;
};

/// What a peer with this fault does. Throws std::invalid_argument where the table does not know it.
template <typename Act>
Act findAct(std::span<const FaultAct<Act>> table, const Fault& fault) {
    const auto row =
        std::ranges::find_if(table, [&](const FaultAct<Act>& each) { return each.kind.name == fault.kind; });
    if (row == table.end()) {
        throw std::invalid_argument("unknown fault: " + fault.kind);
    }
    return row->act;
}

/// The kinds of fault in a table, without the row for the duty.
template <typename Act>
std::vector<FaultKind> kindsOf(std::span<const FaultAct<Act>> table) {
    std::vector<FaultKind> kinds;
    for (const FaultAct<Act>& row : table.subspan(1)) {
        kinds.push_back(row.kind);
    }
    return kinds;
}

/// Waits for the milliseconds of the fault "slow".
inline void delayAnswer(const Fault& fault) {
    std::this_thread::sleep_for(std::chrono::milliseconds(fault.number));
}

}  // namespace Boardsim
