#include "Descriptor.hpp"

#include <bit>
#include <cstring>

namespace FPDisp {

static_assert(std::endian::native == std::endian::little, "descriptors have the board's byte order");

std::uint32_t Descriptor::word(std::size_t index) const {
    std::uint32_t value = 0;
    std::memcpy(&value, static_cast<const unsigned char*>(words) + index * sizeof value, sizeof value);
    return value;
}

}  // namespace FPDisp
