#pragma once

#include <array>
#include <streambuf>

namespace Korvel {

/// Buffers what a stream writes to a descriptor. Unlike the library's own buffers it loses nothing where a
/// signal interrupts a write, or where the descriptor was made non-blocking and its other end is slow.
/// Other failures fail the stream and leave errno set.
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
