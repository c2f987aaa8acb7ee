#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>

#include "PieceSource.hpp"

namespace Report {

/// Hands a tar archive to libarchive in portions that bound its memory and time. libarchive reads the
/// extended headers of a member and the map of a sparse file as a whole, and needs a second for names of 64
/// KiB that are not ASCII. While it reads a header, it therefore gets one block at a time, up to a limit.
class TarFeed {
public:
    /// `mostHeader` is the most bytes that a member's headers may have. `tar` must outlive this object.
    TarFeed(PieceSource& tar, std::size_t mostHeader) : source(tar), mostHeaderBytes(mostHeader) {}

    void beginHeader();
    void beginData() { inHeader = false; }

    /// The next portion. Empty at the end of the archive, and if failed().
    std::string_view next() noexcept;

    /// Whether a header is too large, or reading threw an exception.
    bool failed() const { return headerTooLarge || error; }
    bool tooLarge() const { return headerTooLarge; }
    void rethrow() const;

    /// Whether more was asked for than the archive has.
    bool starved() const { return atEnd; }

    /// Whether only zeros follow the first `consumed` bytes of the archive. These bytes end in the newest
    /// portion. Reads the archive to its end.
    bool onlyZerosAfter(std::uint64_t consumed);

private:
    std::string_view take(std::size_t most);

    PieceSource& source;
    std::size_t mostHeaderBytes;
    std::string_view piece;    ///< of the source, not yet handed out
    std::string_view portion;  ///< the newest one
    std::uint64_t handedOut = 0;
    std::size_t headerBytes = 0;
    bool inHeader = true;
    bool headerTooLarge = false;
    bool atEnd = false;
    std::exception_ptr error;
};

}  // namespace Report
