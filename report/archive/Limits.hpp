#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace Report {

/// The absolute limits of one package and of everything nested in it. A ratio would be no limit: an honest
/// package of full logs has a compression ratio of 93.
struct Limits {
    std::uint64_t maxBytes = std::uint64_t{2} << 30;  ///< inflated, in all layers together
    std::size_t maxMembers = 100'000;                 ///< in all nested packages together
    std::size_t maxLine = std::size_t{1} << 20;       ///< bytes of a line; the rest of it is not read
    std::size_t maxName = std::size_t{4} << 10;       ///< bytes of a member's name
    std::size_t maxDepth = 8;  ///< the package is level 1, a nested package or .gz piece one more
    std::chrono::milliseconds maxTime{10'000};      ///< processor time; the last tenth is not for reading
    std::size_t maxMemory = std::size_t{64} << 20;  ///< bytes of memory that a program uses for a package
};

}  // namespace Report
