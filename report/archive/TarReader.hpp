#pragma once

#include <memory>
#include <optional>

#include "Budget.hpp"
#include "Lookahead.hpp"
#include "PackageVisitor.hpp"
#include "PieceSource.hpp"

namespace Report {

struct TarMember {
    MemberHeader header;
    bool cut = false;  ///< a name in the header is longer than the limit
};

/// Reads a tar archive from its first byte to the end of the stream. Stops at the first damaged header.
class TarReader {
public:
    /// Pieces of the stream that are not the last one have a multiple of tarBlockSize bytes. Both must
    /// outlive this object.
    TarReader(PieceSource& tar, Budget& budget);
    ~TarReader();
    TarReader(const TarReader&) = delete;
    TarReader& operator=(const TarReader&) = delete;
    TarReader(TarReader&&) = delete;
    TarReader& operator=(TarReader&&) = delete;

    /// The next member; skips what remains of the one before. Nothing at the end; end() then says how the
    /// archive ended.
    std::optional<TarMember> next();

    /// The contents of the current member, with zeros for the holes of a sparse file. At its end, end() says
    /// whether it is complete.
    PieceSource& contents();

    const LayerEnd& end() const;

private:
    class Reader;

    std::unique_ptr<Reader> reader;
};

}  // namespace Report
