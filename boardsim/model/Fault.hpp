#pragma once

#include <string>
#include <string_view>

namespace Boardsim {

/// A way to misbehave that a peer knows, as people name it: "silent", or "slow:200" with a number.
struct FaultKind {
    std::string_view name;
    std::string_view help;         ///< what happens
    std::string_view number = {};  ///< what help calls the number; empty: the kind takes none
    int least = 0;                 ///< smallest number taken
    int most = 0;                  ///< greatest number taken

    bool takesNumber() const { return !number.empty(); }

    /// As help shows it: "silent", or "slow:MS" with a number.
    std::string form() const {
        return std::string(name) + (takesNumber() ? ":" + std::string(number) : std::string());
    }
};

/// How one peer misbehaves. An empty kind: not at all.
struct Fault {
    std::string kind;
    int number = 0;           ///< 0 where the kind takes none
    std::string said = kind;  ///< as a scenario says it, with the prefix of its group and the number
};

/// Longest delay that a fault may ask for, in milliseconds.
constexpr int longestDelayMs = 600'000;

}  // namespace Boardsim
