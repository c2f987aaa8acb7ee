#include "DescriptorStream.hpp"

#include <cstddef>
#include <string_view>

namespace Report {
namespace {

constexpr std::size_t bufferSize = 65536;

}  // namespace

DescriptorStream::DescriptorStream(int descriptor) : sink(descriptor, {}), buffer(bufferSize) {
    setp(buffer.data(), buffer.data() + buffer.size());
}

DescriptorStream::int_type DescriptorStream::overflow(int_type character) {
    writeOut();
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        sputc(traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

int DescriptorStream::sync() {
    writeOut();
    return 0;
}

void DescriptorStream::writeOut() {
    const std::string_view bytes(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(buffer.data(), buffer.data() + buffer.size());  // what cannot be written is dropped
    sink.write(bytes);
}

}  // namespace Report
