#pragma once

#include <span>

#include "Address.hpp"

namespace Report {

/// Writes `address` over the spelling of another address of the same kind, in that spelling: with the same
/// separators, the same number of digits in each group, the same groups left out, and letters in the case of
/// those that they replace. Returns false, and changes nothing, if the address does not fit.
[[nodiscard]] bool respell(std::span<char> spelling, const Address& address);

/// How an address is written, as far as it matters for the addresses that fit.
struct SpellingNeeds {
    bool hexadecimal = false;  ///< an IPv4 address as the end of an IPv6 address, in hexadecimal
    bool dotted = false;       ///< an IPv6 address that ends with dotted decimal numbers
};

SpellingNeeds needsOf(std::string_view spelling, AddressKind kind);

/// Whether `candidate` can replace the octet `index` of an address in every spelling with these needs. The
/// octets before it decide which zeros are written.
bool fits(const Address& original, std::size_t index, std::uint8_t candidate, SpellingNeeds needs);

}  // namespace Report
