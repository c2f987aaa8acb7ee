#pragma once

#include <cstdint>

namespace Boardsim {

/// A share of a number, rounded down.
inline std::uint64_t perMille(std::uint64_t number, std::uint64_t share) {
    return number * share / 1000;
}

}  // namespace Boardsim
