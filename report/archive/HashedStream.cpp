#include "HashedStream.hpp"

#include <array>

namespace Report {

namespace {

constexpr std::size_t fileBuffer = std::size_t{128} << 10;

}  // namespace

HashedStream::HashedStream(ByteSource& file)
    : source(file), buffer(std::make_unique_for_overwrite<char[]>(fileBuffer)) {
    sha256_init(&context);
}

std::string_view HashedStream::next() {
    const std::string_view piece(buffer.get(), source.read({buffer.get(), fileBuffer}));
    sha256_update(&context, piece.size(), reinterpret_cast<const std::uint8_t*>(piece.data()));
    count += piece.size();
    return piece;
}

std::string HashedStream::sha256() {
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
    sha256_digest(&context, digest.size(), digest.data());
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

}  // namespace Report
