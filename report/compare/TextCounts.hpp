#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Report {

/// How often each of many texts occurs. Knows only hashes of the texts, of 64 bits each: two texts with the
/// same hash count as the same text.
class TextCounts {
public:
    TextCounts() = default;
    explicit TextCounts(std::vector<std::uint64_t> hashes);

    /// Counts each text as often as the one of the two that has it more often.
    void raiseTo(const TextCounts& other);

    /// Takes a text out. Returns false if none of it is left.
    bool take(std::uint64_t hash);

    /// Puts everything back that was taken out.
    void putBack();

    /// Counts the texts that were never out: neither now nor before a putBack().
    std::size_t neverTaken() const;

private:
    struct Row {
        std::uint64_t hash = 0;
        std::uint32_t count = 0;
        std::uint32_t taken = 0;
        std::uint32_t mostTaken = 0;
    };

    std::vector<Row> rows;  ///< in the order of the hashes
};

}  // namespace Report
