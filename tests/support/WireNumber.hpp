#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// What messages carry: numbers of 32 bits, lowest byte first, and texts in fields of a fixed size.

std::string littleEndian(std::uint32_t number);

/// The number at an offset, in bytes. Throws where the message ends before it does.
std::uint32_t numberAt(const std::string& message, std::size_t offset);

/// The text in the field of `size` bytes at an offset, without the zeros that fill the field up.
std::string textAt(const std::string& message, std::size_t offset, std::size_t size);
