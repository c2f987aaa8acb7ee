#pragma once

#include <span>
#include <string>
#include <string_view>

/// A block of statistics: the title, then a line with name and value for each counter. The values are
/// made up, but the same in every run.
std::string counterText(std::string_view title, std::span<const std::string_view> counters);
