#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <nettle/sha2.h>

#include "ByteSource.hpp"
#include "PieceSource.hpp"

namespace Report {

/// The bytes of a file, with their number and checksum.
class HashedStream : public PieceSource {
public:
    /// `source` must outlive this object.
    explicit HashedStream(ByteSource& file);

    /// Throws std::system_error if reading fails.
    std::string_view next() override;

    /// Bytes that were read so far.
    std::uint64_t size() const { return count; }

    /// The SHA-256 of the bytes that were read, in hexadecimal. Only once, at the end.
    std::string sha256();

private:
    ByteSource& source;
    std::unique_ptr<char[]> buffer;
    sha256_ctx context{};
    std::uint64_t count = 0;
};

}  // namespace Report
