#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Fuzz {

/// The bytes of an input, read from the front. Past the end, bytes are 0 and texts are empty.
class FuzzInput {
public:
    explicit FuzzInput(std::string_view input) : left(input) {}

    bool isAtEnd() const { return left.empty(); }

    std::string_view bytes(std::size_t count) {
        const std::string_view taken = left.substr(0, count);
        left.remove_prefix(taken.size());
        return taken;
    }

    /// A number of `width` bytes, at most 8, the lowest first.
    std::uint64_t number(std::size_t width) {
        const std::string_view digits = bytes(width);
        std::uint64_t value = 0;
        for (std::size_t index = digits.size(); index > 0; --index) {
            value = value << 8U | static_cast<unsigned char>(digits[index - 1]);
        }
        return value;
    }

    /// The text up to `end`, which is skipped.
    std::string_view textUntil(char end) {
        const std::string_view text = bytes(std::min(left.find(end), left.size()));
        bytes(1);
        return text;
    }

    /// Skips the next byte if it is `byte`. Returns whether it was.
    bool skip(char byte) {
        const bool found = left.starts_with(byte);
        left.remove_prefix(found ? 1 : 0);
        return found;
    }

    std::string_view rest() { return bytes(left.size()); }

private:
    std::string_view left;
};

}  // namespace Fuzz
