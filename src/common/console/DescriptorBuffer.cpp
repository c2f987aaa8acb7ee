#include "DescriptorBuffer.hpp"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Korvel {
namespace {

/// Waits without limit until the descriptor is writable, as a blocking write does.
bool waitUntilWritable(int descriptor) {
    pollfd waiting{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return Base::uninterrupted([&] { return ::poll(&waiting, 1, -1); }) > 0;
}

}  // namespace

DescriptorBuffer::DescriptorBuffer(int target) : descriptor(target) {
    setp(pending.data(), pending.data() + pending.size());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character) {
    if (sync() != 0) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        sputc(traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

std::streamsize DescriptorBuffer::xsputn(const char* text, std::streamsize size) {
    if (size <= epptr() - pptr()) {
        return std::streambuf::xsputn(text, size);
    }
    return sync() == 0 && writeOut(text, size) ? size : 0;
}

int DescriptorBuffer::sync() {
    const bool written = writeOut(pbase(), pptr() - pbase());
    setp(pending.data(), pending.data() + pending.size());
    return written ? 0 : -1;
}

bool DescriptorBuffer::writeOut(const char* text, std::streamsize size) const {
    while (size > 0) {
        const ssize_t count =
            Base::uninterrupted([&] { return ::write(descriptor, text, static_cast<std::size_t>(size)); });
        if (count > 0) {
            text += count;
            size -= count;
        } else if (count == 0) {
            errno = EIO;
            return false;
        } else if (errno != EAGAIN || !waitUntilWritable(descriptor)) {
            return false;
        }
    }
    return true;
}

}  // namespace Korvel
