#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace HostBoard {

/// The ring buffer of a shared-memory log. It keeps the newest text lines in the order of writing. The caller
/// provides the shared memory and must exclude all other users of it during every operation.
///
/// A process may die at any point of an operation. Then the entry that it was adding is missing, and the
/// entries that it was dropping may be gone. Everything else is unchanged.
class LogRing {
public:
    static constexpr std::size_t textSize = std::size_t{2} << 20;  ///< bytes
    static constexpr std::size_t capacity = textSize - 1;          ///< bytes of text kept at most
    static constexpr std::size_t maxEntry = 4096;                  ///< bytes, including the line end
    static constexpr std::size_t headerSize = 4096;
    static constexpr std::size_t memorySize = headerSize + textSize;

    /// Result of a read.
    struct Excerpt {
        std::size_t length;  ///< bytes copied
        unsigned end;        ///< position after the copied bytes; never 0
        bool late;           ///< entries after the start position were already overwritten
    };

    /// `memory` has `memorySize` bytes, is aligned to 8 bytes and outlives the ring. The constructor does not
    /// access it.
    explicit LogRing(std::span<std::byte> memory);

    /// Initializes memory that is all zeros as an empty ring. Must succeed before any operation below.
    /// Returns false, and leaves the memory unchanged, if it contains anything but a ring.
    bool prepare();

    /// Empties the ring and sets its byte count to `written`. Only for a ring without users.
    void restart(std::uint64_t written);

    /// Adds one line of at most `maxEntry` bytes, including the line end. Drops the oldest lines to make
    /// room.
    void append(std::string_view line);

    /// Copies as many whole lines as fit into `buffer`, starting at position `start`. If `start` is 0 or is
    /// not the start of a kept line, starts at the oldest line.
    Excerpt read(std::span<char> buffer, unsigned start) const;

private:
    struct Header {
        std::uint64_t magic;
        std::uint64_t tail;  ///< bytes written before the oldest kept line
        std::uint64_t head;  ///< bytes written so far
    };

    /// The header at one moment. Each operation looks at it once, because a process that does not hold the
    /// lock can change it at any time.
    struct Bounds {
        std::uint64_t tail;
        std::uint64_t head;
    };

    Bounds bounds() const;
    std::optional<std::uint64_t> findKept(unsigned position, const Bounds& kept) const;
    std::uint64_t endOfLineAt(std::uint64_t written, std::uint64_t head) const;
    char& textAt(std::uint64_t written) const;
    void copyIn(std::uint64_t written, std::string_view line);
    void copyOut(std::uint64_t written, std::span<char> buffer) const;

    Header& header;
    std::span<char> text;
};

}  // namespace HostBoard
