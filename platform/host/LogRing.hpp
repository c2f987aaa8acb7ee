#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace HostBoard {

/// The ring of a shared-memory log: text lines in the order of their writing, of which the newest are
/// kept. Lives in memory that several processes share, and does not know how it got there nor who else
/// uses it: every operation needs all other users of the memory excluded.
///
/// A process may die at any point of an operation. What it was about to add is then not there, and what
/// it was about to drop may be gone; all else is as before.
class LogRing {
public:
    static constexpr std::size_t textSize = std::size_t{2} << 20;  ///< bytes of text that the memory holds
    static constexpr std::size_t capacity = textSize - 1;          ///< bytes of text that are kept at most
    static constexpr std::size_t maxEntry = 4096;                  ///< bytes, line end included
    static constexpr std::size_t headerSize = 4096;
    static constexpr std::size_t memorySize = headerSize + textSize;

    /// Outcome of a read.
    struct Excerpt {
        std::size_t length;  ///< bytes copied
        unsigned end;        ///< position behind them; never 0
        bool late;           ///< entries behind the start of the read were gone already
    };

    /// `memory` is `memorySize` bytes at an address divisible by 8, and outlives the ring. It is not
    /// touched before the first operation.
    explicit LogRing(std::span<std::byte> memory);

    /// Makes an empty ring of memory that is all zeros, and must have succeeded before any operation
    /// below. False, and the memory untouched, when it holds something else than a ring.
    bool prepare();

    /// Makes an empty ring of which `written` bytes count as written and dropped. Only for a ring that has
    /// no users yet.
    void restart(std::uint64_t written);

    /// Adds a line of at most `maxEntry` bytes, the last and no other being a line end. Drops as many of
    /// the oldest lines as are in its way.
    void append(std::string_view line);

    /// Copies whole lines from the position `start` on, as many as fit into `buffer`. Where `start` is 0,
    /// or not the position of a line that is kept, copying begins with the oldest line.
    Excerpt read(std::span<char> buffer, unsigned start) const;

private:
    struct Header {
        std::uint64_t magic;
        std::uint64_t tail;  ///< bytes written before the oldest line kept
        std::uint64_t head;  ///< bytes written so far
    };

    std::optional<std::uint64_t> findKept(unsigned position) const;
    std::uint64_t behindLineAt(std::uint64_t written) const;
    char& textAt(std::uint64_t written) const;
    void copyIn(std::uint64_t written, std::string_view line);
    void copyOut(std::uint64_t written, std::span<char> buffer) const;

    Header& header;
    std::span<char> text;
};

}  // namespace HostBoard
