#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace Report {

/// A hash of 64 bits of a sequence of texts and numbers.
class TextHash {
public:
    void addText(std::string_view text) { addNumber(std::hash<std::string_view>{}(text)); }

    void addNumber(std::uint64_t number) {
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
        constexpr unsigned half = 32;
        state = (state ^ number) * golden;
        state ^= state >> half;
    }

    std::uint64_t value() const { return state; }

private:
    std::uint64_t state = 0;
};

}  // namespace Report
