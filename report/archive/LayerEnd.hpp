#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Budget.hpp"

namespace Report {

/// How a layer ended.
enum class Integrity : std::uint8_t {
    whole,
    cut,      ///< it ends early
    altered,  ///< its checksum, length or structure is wrong
    notRead,  ///< a limit ended the reading
};

struct LayerEnd {
    Integrity integrity = Integrity::whole;
    std::string reason;          ///< in words, for every integrity but whole
    std::optional<Limit> limit;  ///< the limit, for notRead
};

/// For what a limit left out.
LayerEnd endByLimit(Limit limit);

}  // namespace Report
