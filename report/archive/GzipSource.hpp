#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <zlib.h>

#include "Budget.hpp"
#include "LayerEnd.hpp"
#include "PieceSource.hpp"

namespace Report {

/// The first bytes of every gzip stream: two bytes of magic, and the only method of compression.
constexpr std::string_view gzipMagic = "\x1f\x8b\x08";

/// Whether a stream with these first bytes is a gzip stream.
inline bool startsLikeGzip(std::string_view bytes) {
    return bytes.starts_with(gzipMagic);
}

/// The contents of a gzip stream. Every piece but the last has the same size, a multiple of a tar block.
class GzipSource : public PieceSource {
public:
    /// Both must outlive this object.
    GzipSource(PieceSource& packed, Budget& budget);
    ~GzipSource() override;
    GzipSource(const GzipSource&) = delete;
    GzipSource& operator=(const GzipSource&) = delete;
    GzipSource(GzipSource&&) = delete;
    GzipSource& operator=(GzipSource&&) = delete;

    /// After the last piece, the packed stream was read to its end unless it is damaged or a limit was
    /// reached.
    std::string_view next() override;

    /// How the stream ended. Only after next() returned an empty piece.
    const LayerEnd& end() const { return ending; }

private:
    std::size_t fill(std::size_t most);
    void step();
    void refill();
    void readTrailingZeros();
    void finish(Integrity integrity, std::string reason);
    bool stopAtLimit();

    PieceSource& source;
    Budget& limits;
    std::unique_ptr<char[]> buffer;
    z_stream stream{};
    bool exceeds = false;  ///< there is more than the limit allows
    bool ended = false;
    LayerEnd ending;
};

}  // namespace Report
