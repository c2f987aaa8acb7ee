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

/// Size of an answer with the fault "oversized"; longer than any correct answer.
inline constexpr std::size_t oversizedAnswer = 400;

/// One row of a peer's table of faults: the kind, and the function that the peer then calls. The first row
/// has an empty kind and the function without a fault.
template <typename Handler>
struct FaultHandler {
    FaultKind kind;
    Handler handler;
};

/// Throws std::invalid_argument if the table lacks the fault.
template <typename Handler>
Handler findHandler(std::span<const FaultHandler<Handler>> table, const Fault& fault) {
    const auto row = std::ranges::find_if(
        table, [&](const FaultHandler<Handler>& each) { return each.kind.name == fault.kind; });
    if (row == table.end()) {
        throw std::invalid_argument("unknown fault: " + fault.kind);
    }
    return row->handler;
}

/// All kinds of a table, without the first row.
template <typename Handler>
std::vector<FaultKind> kindsOf(std::span<const FaultHandler<Handler>> table) {
    std::vector<FaultKind> kinds;
    for (const FaultHandler<Handler>& row : table.subspan(1)) {
        kinds.push_back(row.kind);
    }
    return kinds;
}

/// Waits for the milliseconds of the fault "slow".
inline void delayAnswer(const Fault& fault) {
    std::this_thread::sleep_for(std::chrono::milliseconds(fault.number));
}

}  // namespace Boardsim
