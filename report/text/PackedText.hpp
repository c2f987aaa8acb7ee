#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Report {

/// The text of a part, compressed in memory, so that a package with 88 MiB of logs fits into the memory of
/// one with 20 MiB. Holds bytes as they came, of any encoding.
class PackedText {
public:
    void append(std::string_view bytes);

    /// Gives back memory that only append() needs. Call it at the end of the text.
    void finish();

    /// Bytes of the text.
    std::uint64_t size() const { return length; }
    /// Bytes of memory that the text uses now.
    std::size_t memory() const { return packedBytes + open.capacity(); }

    /// Calls `visit` with the text in pieces, from its beginning, until it returns false.
    void read(const std::function<bool(std::string_view)>& visit) const;

    /// The first `most` bytes of the text.
    std::string head(std::size_t most) const;

    /// Calls `visit` with each line, without its line end, until it returns false. A CR at the end of the
    /// line remains. A line that is longer than `maxLine` is cut to it.
    void forEachLine(std::size_t maxLine, const std::function<bool(std::string_view)>& visit) const;

private:
    struct Block {
        std::string packed;
        std::size_t size = 0;  ///< of the text
    };

    void closeBlock();

    std::vector<Block> blocks;
    std::string open;  ///< the end of the text, not yet compressed
    std::uint64_t length = 0;
    std::size_t packedBytes = 0;
};

}  // namespace Report
