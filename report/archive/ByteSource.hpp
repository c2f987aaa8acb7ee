#pragma once

#include <cstddef>
#include <span>

namespace Report {

/// A stream of bytes that is read once, from its beginning to its end.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    ByteSource(ByteSource&&) = delete;
    ByteSource& operator=(ByteSource&&) = delete;
    virtual ~ByteSource() = default;

    /// Reads up to buffer.size() bytes. Returns 0 only at the end. Throws std::system_error if reading fails.
    [[nodiscard]] virtual std::size_t read(std::span<char> buffer) = 0;
};

}  // namespace Report
