#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace Boardsim {

/// A block of statistics: the title, then one line with name and value per counter. The values are invented,
/// but the same in every run: multiples of `step`.
std::string counterText(std::string_view title, std::span<const std::string_view> counters,
                        std::size_t step = 1009);

}  // namespace Boardsim
