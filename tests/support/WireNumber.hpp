#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The fields of messages: 32-bit numbers, lowest byte first, and texts in fields of a fixed size.

std::string littleEndian(std::uint32_t number);

/// The number at an offset in bytes. Throws if the message ends before it.
std::uint32_t numberAt(const std::string& message, std::size_t offset);

/// The text in the field of `size` bytes at an offset, without the padding zeros.
std::string textAt(const std::string& message, std::size_t offset, std::size_t size);
