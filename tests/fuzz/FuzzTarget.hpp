#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Each fuzz target defines this function. It returns for every input; anything else is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Fuzz {

/// Ends the program, which is a finding, unless `holds`.
void require(bool holds, const char* what);

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace Fuzz
