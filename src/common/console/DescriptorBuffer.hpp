#pragma once

#include <array>
#include <streambuf>

namespace Korvel {

/// A stream buffer that writes to a file descriptor. Unlike the library's own buffers, it loses nothing if a
/// signal interrupts a write, or if the descriptor is non-blocking and its reader is slow. On other failures,
/// the stream fails and errno is set.
class DescriptorBuffer : public std::streambuf {
public:
    explicit DescriptorBuffer(int target);

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

private:
    bool writeOut(const char* text, std::streamsize size) const;

    const int descriptor;
    std::array<char, 16384> pending{};
};

}  // namespace Korvel
