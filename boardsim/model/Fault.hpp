#pragma once

#include <string>
#include <string_view>

namespace Boardsim {

/// One kind of fault. People write it as "silent", or with a number as "slow:200".
struct FaultKind {
    std::string_view name;
    std::string_view help;         ///< what the peer does
    std::string_view number = {};  ///< placeholder of the number in help; empty: the kind takes none
    int least = 0;                 ///< smallest valid number
    int most = 0;                  ///< greatest valid number

    bool takesNumber() const { return !number.empty(); }

    /// As in help: "silent", or "slow:MS" if the kind takes a number.
    std::string form() const {
        return std::string(name) + (takesNumber() ? ":" + std::string(number) : std::string());
    }
};

/// The fault of one peer. An empty kind: no fault.
struct Fault {
    std::string kind;
    int number = 0;           ///< 0 if the kind takes none
    std::string text = kind;  ///< as in a scenario, with the group's prefix and the number
};

/// Longest delay of a fault, in milliseconds.
constexpr int longestDelayMs = 600'000;

}  // namespace Boardsim
