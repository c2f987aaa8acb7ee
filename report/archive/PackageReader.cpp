#include "PackageReader.hpp"

#include <cstddef>
#include <optional>
#include <string_view>

#include "GzipSource.hpp"
#include "HashedStream.hpp"
#include "Lookahead.hpp"
#include "PieceSource.hpp"
#include "TarBlock.hpp"
#include "TarReader.hpp"
#include "Zeros.hpp"

namespace Report {

namespace {

bool isDamaged(const LayerEnd& end) {
    return end.integrity == Integrity::cut || end.integrity == Integrity::altered;
}

/// The layer whose end says more about the package. A cut outer layer also cuts the inner one.
const LayerEnd& worse(const LayerEnd& outer, const LayerEnd& inner) {
    return isDamaged(outer) || (outer.integrity == Integrity::notRead && !isDamaged(inner)) ? outer : inner;
}

/// Reads the layers of a package from the outermost one inwards. `depth` is the number of gzip layers so far.
class LayerReader {
public:
    LayerReader(Budget& budget, PackageVisitor& packageVisitor) : limits(budget), visitor(packageVisitor) {}

    LayerEnd readPackage(Lookahead& file);

private:
    LayerEnd leaveGzip(LayerEnd end);
    LayerEnd readGzip(PieceSource& packed, std::size_t depth);
    LayerEnd readContents(Lookahead& contents, std::size_t depth);
    LayerEnd readTar(PieceSource& contents, std::size_t depth);
    void readMember(TarReader& tar, const TarMember& member, std::size_t depth);
    LayerEnd readMemberContents(Lookahead& contents, std::size_t depth);
    void readGzipOrData(Lookahead& contents, std::size_t depth);

    Budget& limits;
    PackageVisitor& visitor;
};

LayerEnd LayerReader::leaveGzip(LayerEnd end) {
    visitor.leaveGzip(end);
    return end;
}

LayerEnd LayerReader::readPackage(Lookahead& file) {
    const std::string_view magic = file.peek(gzipMagic.size()).substr(0, gzipMagic.size());
    if (!magic.empty() && gzipMagic.starts_with(magic)) {
        return readGzip(file, 1);
    }
    visitor.enterGzip();
    return leaveGzip(magic.empty() ? LayerEnd{Integrity::cut, "the file is empty", {}}
                                   : LayerEnd{Integrity::altered, "the file is not compressed by gzip", {}});
}

// NOLINTBEGIN(misc-no-recursion): --max-depth bounds the recursion
LayerEnd LayerReader::readGzip(PieceSource& packed, std::size_t depth) {
    visitor.enterGzip();
    if (depth > limits.limits().maxDepth) {
        return leaveGzip(endByLimit(Limit::depth));
    }
    GzipSource gzip(packed, limits);
    Lookahead contents(gzip);
    const LayerEnd inner = readContents(contents, depth);
    drain(gzip);
    return worse(leaveGzip(gzip.end()), inner);
}

LayerEnd LayerReader::readContents(Lookahead& contents, std::size_t depth) {
    const bool isPackage = depth == 1;
    const std::string_view first = contents.peek(tarBlockSize);
    // A package without members is all zeros. An inner layer of zeros is data.
    if (startsLikeTar(first) || (isPackage && allZeros(first))) {
        return readTar(contents, depth);
    }
    readGzipOrData(contents, depth);
    if (!isPackage || limits.reached()) {
        return {};
    }
    return {Integrity::altered, "the compressed data are no tar archive", {}};
}

LayerEnd LayerReader::readTar(PieceSource& contents, std::size_t depth) {
    visitor.enterTar();
    TarReader tar(contents, limits);
    while (const std::optional<TarMember> member = tar.next()) {
        readMember(tar, *member, depth);
    }
    visitor.leaveTar(tar.end());
    return tar.end();
}

void LayerReader::readMember(TarReader& tar, const TarMember& member, std::size_t depth) {
    visitor.beginMember(member.header);
    if (member.cut) {
        return visitor.endMember(endByLimit(Limit::name));
    }
    Lookahead contents(tar.contents());
    const LayerEnd end = readMemberContents(contents, depth);
    drain(contents);
    visitor.endMember(tar.end().integrity == Integrity::whole ? end : tar.end());
}

LayerEnd LayerReader::readMemberContents(Lookahead& contents, std::size_t depth) {
    if (depth == limits.limits().maxDepth && startsLikeGzip(contents.peek(gzipMagic.size()))) {
        return endByLimit(Limit::depth);
    }
    readGzipOrData(contents, depth);
    return {};
}

void LayerReader::readGzipOrData(Lookahead& contents, std::size_t depth) {
    if (startsLikeGzip(contents.peek(gzipMagic.size()))) {
        readGzip(contents, depth + 1);
        return;
    }
    for (std::string_view piece = contents.next(); !piece.empty(); piece = contents.next()) {
        visitor.data(piece);
    }
}

// NOLINTEND(misc-no-recursion)

/// Reads what remains of the file. Returns false if that takes too much time.
bool readToEnd(PieceSource& file, Budget& budget) {
    while (budget.checkTime()) {
        if (file.next().empty()) {
            return true;
        }
    }
    return false;
}

}  // namespace

PackageFacts readPackage(ByteSource& source, Budget& budget, PackageVisitor& visitor) {
    HashedStream hashed(source);
    Lookahead file(hashed);
    PackageFacts facts;
    facts.end = LayerReader(budget, visitor).readPackage(file);
    if (readToEnd(hashed, budget)) {
        facts.sha256 = hashed.sha256();
    }
    facts.size = hashed.size();
    return facts;
}

}  // namespace Report
