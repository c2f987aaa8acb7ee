#include "Originals.hpp"

#include <algorithm>
#include <bit>
#include <new>
#include <optional>

#include "Letters.hpp"

namespace Report {

namespace {

constexpr std::uint64_t fewestBits = 64;
constexpr std::uint64_t mostBits = std::uint64_t{1} << 25;

/// About what an address or a name needs in all tables of a run. A package with too many of them reaches the
/// memory limit, so that its reading ends.
constexpr std::size_t memoryOfOriginal = 320;

/// The EUI-64 that an address is, or that an IPv6 address ends with.
std::optional<std::span<const std::uint8_t, 8>> eui64In(const Address& address) {
    switch (address.kind) {
        case AddressKind::eui64:
            return std::span(address.octets).first<8>();
        case AddressKind::ip6:
            return std::span(address.octets).last<8>();
        case AddressKind::ip4:
        case AddressKind::mac:
            break;
    }
    return std::nullopt;
}

}  // namespace

SeenFilter::SeenFilter(std::uint64_t mostBytes)
    : size(std::bit_ceil(std::clamp(mostBytes, fewestBits, mostBits))),
      bits(static_cast<std::uint64_t*>(std::calloc(size / 64, sizeof(std::uint64_t)))) {
    if (!bits) {
        throw std::bad_alloc();
    }
}

void SeenFilter::add(std::size_t hash) {
    if (!mayContain(hash)) {  // most texts repeat; a look does not write to the cache
        const std::size_t bit = place(hash);
        bits[bit / 64] |= std::uint64_t{1} << (bit % 64);
    }
}

bool SeenFilter::mayContain(std::size_t hash) const {
    const std::size_t bit = place(hash);
    return (bits[bit / 64] >> (bit % 64) & 1U) != 0;
}

bool Originals::address(const FoundAddress& token, std::span<char> spelling) {
    const Address& address = token.address;
    if (describesNobody(address)) {
        return false;
    }
    if (!token.certain && !earlier.isReplacement(address)) {
        seen.add(AddressHash()(address));
        const auto eui64 = eui64In(address);
        if (eui64 && macIn(*eui64, false)) {
            addTo(undecided, address, needsOf({spelling.data(), spelling.size()}, address.kind));
        }
        return false;
    }
    addTo(found, address, needsOf({spelling.data(), spelling.size()}, address.kind));
    return true;
}

void Originals::word(std::span<char> text) {
    const std::string_view word{text.data(), text.size()};
    if (earlier.originals().filter.mayContain(word)) {
        fold(word, foldedWord);
        if (earlier.isReplacement(foldedWord)) {
            addName(foldedWord);
            return;
        }
    }
    seen.add(foldedHash(word));
}

void Originals::addName(const std::string& name) {
    if (foundNames.insert(name).second) {
        static_cast<void>(budget.keep(memoryOfOriginal));
    }
}

void Originals::settle() {
    for (const auto& [address, needs] : undecided) {
        const auto eui64 = eui64In(address);
        if (eui64 && (found.contains(*macIn(*eui64, false)) || found.contains(*macIn(*eui64, true)))) {
            addTo(found, address, needs);
        }
    }
    undecided.clear();
}

void Originals::addTo(AddressTable& table, const Address& address, SpellingNeeds needs) {
    const auto [entry, added] = table.emplace(address, needs);
    if (added) {
        static_cast<void>(budget.keep(memoryOfOriginal));
    }
    entry->second.hexadecimal = entry->second.hexadecimal || needs.hexadecimal;
    entry->second.dotted = entry->second.dotted || needs.dotted;
}

}  // namespace Report
