#pragma once

#include <cstdint>

/// What lies in the board's memory for people to look at.
namespace Boardsim::PhysicalMemory {

/// Physical addresses of a host packet descriptor (CPPI) and of its buffer, which holds a frame behind some
/// room that is left free.
constexpr std::uint32_t descriptor = 0xeb6b6100;
constexpr std::uint32_t buffer = 0xeb700000;

constexpr std::uint32_t bufferLength = 256;  ///< bytes
constexpr std::uint32_t frameOffset = 64;    ///< bytes of the buffer that are left free
constexpr std::uint32_t frameLength = 60;    ///< bytes

/// Puts both there. Throws std::runtime_error where the memory cannot be had.
void lay();

}  // namespace Boardsim::PhysicalMemory
