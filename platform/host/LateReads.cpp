#include "LateReads.hpp"

#include <algorithm>

namespace HostBoard {
namespace {

/// Never 0, which marks an unused slot: a late read never starts at 0.
std::uint64_t asNumber(unsigned start, unsigned end) {
    return std::uint64_t{start} << 32 | end;
}

}  // namespace

void LateReads::add(unsigned start, unsigned end) {
    reads[count++ % capacity] = asNumber(start, end);
}

bool LateReads::contains(unsigned start, unsigned end) const {
    const std::uint64_t wanted = asNumber(start, end);
    return start != 0 && std::ranges::any_of(reads, [wanted](std::uint64_t read) { return read == wanted; });
}

}  // namespace HostBoard
