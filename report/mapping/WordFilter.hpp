#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <string_view>

#include "ByteClass.hpp"
#include "TokenScanner.hpp"

namespace Report {

/// A set of folded words that quickly rejects most other words, by their length and first byte.
class WordFilter {
public:
    void add(std::string_view word) {
        if (word.size() <= longestWord) {
            lengths[indexOf(word.front())].set(word.size());
        }
    }

    /// `word` need not be folded, is not empty, and has at most longestWord bytes.
    bool mayContain(std::string_view word) const { return lengths[indexOf(word.front())][word.size()]; }

private:
    /// Both cases of a letter have the same index. All characters beyond ASCII have one.
    static std::size_t indexOf(char first) {
        return isOf(first, highByte)
                   ? 0U
                   : static_cast<std::size_t>(isOf(first, letterByte) ? first | 0x20 : first);
    }

    std::array<std::bitset<longestWord + 1>, 128> lengths;
};

}  // namespace Report
