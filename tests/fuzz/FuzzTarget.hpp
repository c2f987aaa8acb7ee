#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Limits.hpp"

/// Each fuzz target defines this function. It returns for every input; anything else is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace ReportFuzz {

/// Ends the program, which is a finding, unless `holds`.
void require(bool holds, const char* what);

/// So small that inputs can reach them.
Report::Limits smallLimits();

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace ReportFuzz
