#pragma once

#include <string_view>

namespace Report {

/// A stream of bytes that is read once. Unlike a ByteSource, it hands out pieces of its own memory, so that
/// no layer of a package copies the bytes.
class PieceSource {
public:
    PieceSource() = default;
    PieceSource(const PieceSource&) = delete;
    PieceSource& operator=(const PieceSource&) = delete;
    PieceSource(PieceSource&&) = delete;
    PieceSource& operator=(PieceSource&&) = delete;
    virtual ~PieceSource() = default;

    /// The next piece, of any size but 0. Empty at the end, and if the stream cannot be read further. A piece
    /// is valid until the next call.
    [[nodiscard]] virtual std::string_view next() = 0;
};

/// Reads a stream to its end.
inline void drain(PieceSource& source) {
    while (!source.next().empty()) {
    }
}

}  // namespace Report
