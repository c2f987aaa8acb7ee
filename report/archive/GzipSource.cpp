#include "GzipSource.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "Zeros.hpp"

namespace Report {

namespace {

constexpr std::size_t contentsBuffer = std::size_t{128} << 10;
constexpr int gzipWithLargestWindow = 15 + 16;  // zlib then checks the checksum and the length in the trailer

}  // namespace

GzipSource::GzipSource(PieceSource& packed, Budget& budget)
    : source(packed), limits(budget), buffer(std::make_unique_for_overwrite<char[]>(contentsBuffer)) {
    if (::inflateInit2(&stream, gzipWithLargestWindow) != Z_OK) {
        throw std::bad_alloc();
    }
}

GzipSource::~GzipSource() {
    ::inflateEnd(&stream);
}

std::string_view GzipSource::next() {
    if (!exceeds && (ended || stopAtLimit())) {
        return {};
    }
    const std::uint64_t left = limits.bytesLeft();
    // One byte more than the limit shows whether the stream exceeds it.
    const std::size_t most = left < contentsBuffer ? static_cast<std::size_t>(left) + 1 : contentsBuffer;
    const std::size_t size = exceeds ? most : fill(most);
    exceeds = size > left;
    // What fits is handed out first. The next call then reaches the limit.
    const std::size_t fitting = exceeds && left > 0 ? most - 1 : size;
    if (!limits.inflate(fitting)) {
        exceeds = false;
        stopAtLimit();
        return {};
    }
    if (!ended && !limits.checkTime()) {
        stopAtLimit();
    }
    return {buffer.get(), fitting};
}

std::size_t GzipSource::fill(std::size_t most) {
    stream.next_out = reinterpret_cast<Bytef*>(buffer.get());
    stream.avail_out = static_cast<uInt>(most);
    while (!ended && stream.avail_out > 0) {
        step();
    }
    return most - stream.avail_out;
}

void GzipSource::step() {
    if (stream.avail_in == 0) {
        refill();
        if (ended) {
            return;
        }
    }
    switch (::inflate(&stream, Z_NO_FLUSH)) {
        case Z_OK:
        case Z_BUF_ERROR:
            return;
        case Z_STREAM_END:
            return readTrailingZeros();
        case Z_MEM_ERROR:
            throw std::bad_alloc();
        default:
            return finish(Integrity::altered, std::string("the compressed data are damaged: ") +
                                                  (stream.msg ? stream.msg : "not in the gzip format"));
    }
}

void GzipSource::refill() {
    const std::string_view piece = source.next();
    if (piece.empty()) {
        return finish(Integrity::cut, "the compressed data end early");
    }
    // zlib does not write to its input.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
    stream.avail_in = static_cast<uInt>(piece.size());
}

void GzipSource::readTrailingZeros() {
    std::string_view rest(reinterpret_cast<const char*>(stream.next_in), stream.avail_in);
    do {
        if (!allZeros(rest)) {
            return finish(Integrity::altered, "other data follow the compressed data");
        }
        rest = source.next();
    } while (!rest.empty() && limits.checkTime());
    finish(Integrity::whole, {});
}

void GzipSource::finish(Integrity integrity, std::string reason) {
    // A limit may have ended the packed stream, but what is damaged is damaged.
    if (integrity == Integrity::altered || !stopAtLimit()) {
        ended = true;
        ending = {integrity, std::move(reason), {}};
    }
}

/// Whether a limit ended the reading.
bool GzipSource::stopAtLimit() {
    if (limits.reached()) {
        ended = true;
        ending = endByLimit(*limits.reached());
    }
    return limits.reached().has_value();
}

}  // namespace Report
