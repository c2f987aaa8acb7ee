#include "PackedText.hpp"

#include <algorithm>
#include <new>
#include <stdexcept>

#include <zstd.h>

namespace Report {
namespace {

constexpr std::size_t blockSize = std::size_t{256} << 10;
constexpr std::size_t smallestBlock = std::size_t{4} << 10;  // less is hardly worth the time
constexpr int level = 1;  // three times as fast as zlib at its fastest, and smaller

void expand(const std::string& packed, std::string& text, std::size_t size) {
    text.resize(size);
    if (::ZSTD_decompress(text.data(), size, packed.data(), packed.size()) != size) {
        throw std::runtime_error("a text in memory cannot be decompressed");
    }
}

}  // namespace

void PackedText::append(std::string_view bytes) {
    length += bytes.size();
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, blockSize - open.size());
        open += piece;
        bytes.remove_prefix(piece.size());
        if (open.size() == blockSize) {
            closeBlock();
        }
    }
}

void PackedText::finish() {
    if (open.size() >= smallestBlock) {
        closeBlock();
    }
    open.shrink_to_fit();
}

void PackedText::closeBlock() {
    std::string packed(::ZSTD_compressBound(open.size()), '\0');
    const std::size_t size = ::ZSTD_compress(packed.data(), packed.size(), open.data(), open.size(), level);
    if (::ZSTD_isError(size) != 0) {
        throw std::bad_alloc();
    }
    packed.resize(size);
    packed.shrink_to_fit();
    packedBytes += packed.capacity();
    blocks.push_back({std::move(packed), open.size()});
    open.clear();
}

void PackedText::read(const std::function<bool(std::string_view)>& visit) const {
    std::string text;
    for (const Block& block : blocks) {
        expand(block.packed, text, block.size);
        if (!visit(text)) {
            return;
        }
    }
    if (!open.empty()) {
        visit(open);
    }
}

std::string PackedText::head(std::size_t most) const {
    std::string text;
    read([&](std::string_view piece) {
        text += piece.substr(0, most - text.size());
        return text.size() < most;
    });
    return text;
}

void PackedText::forEachLine(std::size_t maxLine, const std::function<bool(std::string_view)>& visit) const {
    std::string start;  // of a line that continues in the next block
    bool wanted = true;
    read([&](std::string_view piece) {
        while (wanted && !piece.empty()) {
            const std::size_t end = piece.find('\n');
            const std::string_view line = piece.substr(0, end);
            if (end == std::string_view::npos || !start.empty()) {
                start += line.substr(0, maxLine - std::min(maxLine, start.size()));
            }
            if (end == std::string_view::npos) {
                break;
            }
            wanted = visit(start.empty() ? line.substr(0, maxLine) : std::string_view(start));
            start.clear();
            piece.remove_prefix(end + 1);
        }
        return wanted;
    });
    if (wanted && !start.empty()) {
        visit(start);
    }
}

}  // namespace Report
