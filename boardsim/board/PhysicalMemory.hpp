#pragma once

#include <cstdint>

/// Example data in the board's physical memory.
namespace Boardsim::PhysicalMemory {

/// Physical addresses of a host packet descriptor (CPPI) and of its buffer. The buffer holds a frame after
/// some unused bytes.
constexpr std::uint32_t descriptor = 0xeb6b6100;
constexpr std::uint32_t buffer = 0xeb700000;

constexpr std::uint32_t bufferLength = 256;  ///< bytes
constexpr std::uint32_t frameOffset = 64;    ///< unused bytes before the frame
constexpr std::uint32_t frameLength = 60;    ///< bytes

/// Writes both. Throws std::runtime_error if there is no physical memory.
void fill();

}  // namespace Boardsim::PhysicalMemory
