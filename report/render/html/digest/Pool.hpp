#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Package.hpp"

namespace Report::Html {

/// A supply that is partly in use and partly free, such as a heap, by the values of one part.
struct Pool {
    std::string part;
    std::string name;
    std::uint64_t used = 0;
    std::uint64_t free = 0;
    std::uint64_t all = 0;
    std::optional<std::uint64_t> highest;  ///< most that was in use
    std::optional<std::uint64_t> lowest;   ///< least that was free
    bool addsUp = true;                    ///< used + free = all; `all` is the value of the part otherwise
};

/// Finds pools by the names of values: "bytes in use", "bytes free" and "bytes in all" are a pool if at least
/// two of them are there. A value that is missing is computed from the other two.
std::vector<Pool> poolsOf(const std::vector<Value>& values);

}  // namespace Report::Html
