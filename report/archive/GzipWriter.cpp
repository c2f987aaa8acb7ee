#include "GzipWriter.hpp"

#include <algorithm>
#include <cstddef>
#include <new>

namespace Report {

namespace {

constexpr std::size_t packedBuffer = std::size_t{64} << 10;
constexpr int gzipFormat = 15 + 16;
/// A fifth faster than the default level, and the result is 1.5 % larger.
constexpr int level = 5;
constexpr int zlibDefaultMemory = 8;

}  // namespace

GzipWriter::GzipWriter(ByteSink& sink) : out(sink), buffer(packedBuffer) {
    if (::deflateInit2(&stream, level, Z_DEFLATED, gzipFormat, zlibDefaultMemory, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::bad_alloc();
    }
}

GzipWriter::~GzipWriter() {
    ::deflateEnd(&stream);
}

void GzipWriter::write(std::string_view bytes) {
    constexpr std::size_t most = std::size_t{1} << 30;  // zlib counts in 32 bits
    for (; !bytes.empty(); bytes.remove_prefix(std::min(most, bytes.size()))) {
        deflate(bytes.substr(0, most), Z_NO_FLUSH);
    }
}

void GzipWriter::deflate(std::string_view bytes, int flush) {
    // zlib does not write to its input.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    do {
        stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
        stream.avail_out = static_cast<uInt>(buffer.size());
        ::deflate(&stream, flush);
        const std::size_t size = buffer.size() - stream.avail_out;
        if (size > 0) {
            out.write({buffer.data(), size});
        }
    } while (stream.avail_out == 0);
}

}  // namespace Report
