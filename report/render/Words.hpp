#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Report {

/// A number with commas: "12,345".
std::string grouped(std::uint64_t number);

/// "1 part", "2,000 parts"; `many` is the plural if it is not `one` with an s.
std::string counted(std::uint64_t number, std::string_view one, std::string_view many = {});

/// A rate with its sign and one decimal, or a small or huge one with three digits: "+74142.0", "-0.25".
std::string rateText(double perSecond);

/// A size in a unit that fits: "756 bytes", "12.5 MiB".
std::string sizeText(std::uint64_t bytes);

}  // namespace Report
