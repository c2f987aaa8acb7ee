#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Report {

/// An IPv6 address that holds an IPv4 address (::ffff:0:0/96) counts as that IPv4 address.
enum class AddressKind : std::uint8_t { ip4, ip6, mac, eui64 };

/// The octets of one address of a kind.
constexpr std::size_t widthOf(AddressKind kind) {
    constexpr std::array<std::size_t, 4> widths{4, 16, 6, 8};
    return widths[static_cast<std::size_t>(kind)];
}

/// An address, whatever its spelling.
struct Address {
    using Octets = std::array<std::uint8_t, 16>;

    AddressKind kind = AddressKind::ip4;
    Octets octets{};  ///< widthOf(kind) octets, then zeros

    bool operator==(const Address&) const = default;
    bool operator<(const Address& other) const {
        return kind == other.kind ? octets < other.octets : kind < other.kind;
    }
};

/// The first 12 octets of an IPv6 address that holds an IPv4 address.
constexpr std::array<std::uint8_t, 12> mappedPrefix{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};

/// Whether an address describes nobody, so that it is never replaced: 0/8, 127/8, 224/4, 255.255.255.255, ::,
/// ::1, ff00::/8, and hardware addresses of all zeros, all ones or with the group bit.
bool describesNobody(const Address& address);

/// The hardware address in an EUI-64, or no value if it has none (ff:fe in the middle). `modified` is the
/// form in IPv6 addresses: its universal/local bit is inverted.
std::optional<Address> macIn(std::span<const std::uint8_t, 8> eui64, bool modified);

/// The EUI-64 of a hardware address.
std::array<std::uint8_t, 8> eui64Of(const Address& mac, bool modified);

/// The address in its usual spelling; IPv6 with all eight groups.
std::string textOf(const Address& address);

struct AddressHash {
    std::size_t operator()(const Address& address) const noexcept;
};

}  // namespace Report
