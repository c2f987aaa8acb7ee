#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace Report {

/// The SHA-256 of many packages, in 32 bytes each. Several threads can ask it.
class Checksums {
public:
    /// Adds a checksum in hexadecimal, as a store holds it: each one is greater than the one before. Ignores
    /// what is none.
    void append(std::string_view hexadecimal);

    bool contains(std::string_view hexadecimal) const;

private:
    using Bytes = std::array<std::uint8_t, 32>;

    static std::optional<Bytes> bytesOf(std::string_view hexadecimal);

    std::vector<Bytes> sorted;
};

}  // namespace Report
