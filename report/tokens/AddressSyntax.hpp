#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "Address.hpp"

namespace Report {

/// An address in a text.
struct FoundAddress {
    Address address;
    std::size_t begin = 0;  ///< in the text
    std::size_t end = 0;
    /// False for a spelling that can mean something else: bare digits, a piece of a longer chain of groups.
    bool certain = true;
};

/// A part of a text: letters and digits from `begin` to `end`, with none before and none behind.
struct Run {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t size() const { return end - begin; }
};

/// The functions of this header look for an address that begins at one place of a text. They look behind the
/// address by up to `farthestLook` bytes, and before it by up to `farthestLookBack` bytes. A text that ends
/// earlier is complete.
constexpr std::size_t farthestLook = 128;
constexpr std::size_t farthestLookBack = 16;

/// The IPv4 address, as dotted decimal numbers, that begins at the digit `begin`, where the digit before, if
/// any, belongs to another number. A fifth number counts as a port. Of longer chains, such as object
/// identifiers, any four numbers are an uncertain address.
std::optional<FoundAddress> ip4At(std::string_view text, std::size_t begin);

/// The IPv6 address that begins at `begin`: at a run or at "::". An IPv4 address at its end is read, too.
/// Zones, prefix lengths, brackets and ports are no part of it.
std::optional<FoundAddress> ip6At(std::string_view text, std::size_t begin);

/// The digits of an IPv6 address without colons.
constexpr std::size_t bareIp6Digits = 32;

/// The IPv6 address whose hexadecimal digits are `run`, as Linux prints it in /proc/net. Uncertain: it can be
/// any checksum.
std::optional<FoundAddress> bareIp6At(std::string_view text, Run run);

/// The hardware address or EUI-64 that begins with `run`: groups of hexadecimal digits with colons, hyphens
/// or dots, or bare digits. An EUI-64 has ff:fe in the middle.
std::optional<FoundAddress> hardwareAddressAt(std::string_view text, Run run);

/// The run that begins at `begin`; empty if there is no letter or digit. Looks at most `most` bytes ahead.
Run runAt(std::string_view text, std::size_t begin, std::size_t most);

/// Whether all of a run are hexadecimal digits. True for an empty one.
bool isHex(std::string_view text, Run run);

}  // namespace Report
