#include "TarFeed.hpp"

#include <algorithm>

#include "TarBlock.hpp"
#include "Zeros.hpp"

namespace Report {

namespace {

// What libarchive has not used of a portion of data is the start of the next header.
constexpr std::size_t dataPortion = std::size_t{16} << 10;

}  // namespace

void TarFeed::beginHeader() {
    inHeader = true;
    headerBytes = 0;
}

std::string_view TarFeed::next() noexcept {
    try {
        portion = take(inHeader ? tarBlockSize : dataPortion);
    } catch (...) {
        error = std::current_exception();
        portion = {};
    }
    return portion;
}

std::string_view TarFeed::take(std::size_t most) {
    if (inHeader && headerBytes >= mostHeaderBytes) {
        headerTooLarge = true;
        return {};
    }
    if (piece.empty()) {
        piece = source.next();
    }
    const std::string_view taken = piece.substr(0, most);
    piece.remove_prefix(taken.size());
    headerBytes += taken.size();
    handedOut += taken.size();
    atEnd = taken.empty();
    return taken;
}

void TarFeed::rethrow() const {
    if (error) {
        std::rethrow_exception(error);
    }
}

bool TarFeed::onlyZerosAfter(std::uint64_t consumed) {
    const std::uint64_t unused = std::min<std::uint64_t>(handedOut - consumed, portion.size());
    if (!allZeros(portion.substr(portion.size() - static_cast<std::size_t>(unused)))) {
        return false;
    }
    do {
        if (!allZeros(piece)) {
            return false;
        }
        piece = source.next();
    } while (!piece.empty());
    return true;
}

}  // namespace Report
