#include "Address.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace Report {

namespace {

constexpr std::uint8_t localBit = 2;  ///< of the first octet; IPv6 addresses hold it inverted

bool all(std::span<const std::uint8_t> octets, std::uint8_t value) {
    return std::ranges::all_of(octets, [value](std::uint8_t octet) { return octet == value; });
}

bool ip4DescribesNobody(std::span<const std::uint8_t> octets) {
    const bool multicast = (octets[0] & 0xf0U) == 224;
    return octets[0] == 0 || octets[0] == 127 || multicast || all(octets, 255);
}

bool ip6DescribesNobody(std::span<const std::uint8_t> octets) {
    const bool unspecifiedOrLoopback = all(octets.first(15), 0) && octets[15] <= 1;
    return octets[0] == 0xff || unspecifiedOrLoopback;
}

bool macDescribesNobody(std::span<const std::uint8_t> octets) {
    const bool group = (octets[0] & 1U) != 0;
    return group || all(octets, 0);  // all ones have the group bit, too
}

bool eui64DescribesNobody(std::span<const std::uint8_t> octets) {
    const std::span<const std::uint8_t, 8> eui64 = octets.first<8>();
    const auto nobody = [eui64](bool modified) {
        const std::optional<Address> mac = macIn(eui64, modified);
        return mac && describesNobody(*mac);
    };
    return nobody(false) || nobody(true);
}

}  // namespace

bool describesNobody(const Address& address) {
    constexpr std::array tests{ip4DescribesNobody, ip6DescribesNobody, macDescribesNobody,
                               eui64DescribesNobody};  // in the order of AddressKind
    return tests[static_cast<std::size_t>(address.kind)](
        std::span(address.octets).first(widthOf(address.kind)));
}

std::optional<Address> macIn(std::span<const std::uint8_t, 8> eui64, bool modified) {
    if (eui64[3] != 0xff || eui64[4] != 0xfe) {
        return std::nullopt;
    }
    Address mac{.kind = AddressKind::mac};
    std::ranges::copy(eui64.first<3>(), mac.octets.begin());
    std::ranges::copy(eui64.last<3>(), mac.octets.begin() + 3);
    mac.octets[0] ^= modified ? localBit : 0;
    return mac;
}

std::array<std::uint8_t, 8> eui64Of(const Address& mac, bool modified) {
    const auto& octets = mac.octets;
    const auto first = static_cast<std::uint8_t>(octets[0] ^ (modified ? localBit : 0));
    return {first, octets[1], octets[2], 0xff, 0xfe, octets[3], octets[4], octets[5]};
}

std::string textOf(const Address& address) {
    struct Form {
        char separator;
        std::size_t step;  ///< octets of a group
        int base;
        std::size_t digits;  ///< at least, in each group
    };
    constexpr std::array<Form, 4> forms{{{'.', 1, 10, 1}, {':', 2, 16, 1}, {':', 1, 16, 2}, {':', 1, 16, 2}}};
    const Form& form = forms[static_cast<std::size_t>(address.kind)];
    std::string text;
    for (std::size_t index = 0; index < widthOf(address.kind); index += form.step) {
        unsigned value = address.octets[index];
        if (form.step == 2) {
            value = (value << 8U) | address.octets[index + 1];
        }
        std::array<char, 4> group{};
        const char* const end =
            std::to_chars(group.data(), group.data() + group.size(), value, form.base).ptr;
        const auto length = static_cast<std::size_t>(end - group.data());
        text.append(index == 0 ? 0 : 1, form.separator);
        text.append(form.digits - std::min(length, form.digits), '0').append(group.data(), length);
    }
    return text;
}

std::size_t AddressHash::operator()(const Address& address) const noexcept {
    constexpr std::uint64_t multiplier = 0x9e3779b97f4a7c15;
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::memcpy(&high, address.octets.data(), sizeof(high));
    std::memcpy(&low, address.octets.data() + sizeof(high), sizeof(low));
    std::uint64_t hash = (high ^ static_cast<std::uint64_t>(address.kind)) * multiplier;
    hash = (hash ^ (hash >> 32U) ^ low) * multiplier;
    return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

}  // namespace Report
