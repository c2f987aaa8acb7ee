#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Numbers of 32 bits as messages carry them, lowest byte first.

std::string littleEndian(std::uint32_t number);

/// The number at an offset, in bytes. Throws where the message ends before it does.
std::uint32_t numberAt(const std::string& message, std::size_t offset);
