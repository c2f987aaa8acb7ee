#include "Spelling.hpp"

#include <algorithm>
#include <string>
#include <string_view>

#include "AddressSyntax.hpp"
#include "ByteClass.hpp"

namespace Report {

namespace {

/// Writes `value` over the digits, in hexadecimal. A letter takes the case of the letter before it. False if
/// the value needs more digits.
bool writeHex(std::span<char> digits, unsigned value) {
    for (std::size_t index = digits.size(); index > 0; --index) {
        char& digit = digits[index - 1];
        // g++ 12 takes the first character of `(upper ? "..." : "...")[value % 16]` with
        // -fsanitize=undefined.
        const bool upper = digit >= 'A' && digit <= 'F';
        const std::string_view values = upper ? "0123456789ABCDEF" : "0123456789abcdef";
        digit = values[value % 16];
        value /= 16;
    }
    return value == 0;
}

/// Writes `value` over the digits, in decimal. False if it needs another number of digits. Zeros in front
/// remain.
bool writeDecimal(std::span<char> digits, unsigned value) {
    for (std::size_t index = digits.size(); index > 0; --index) {
        digits[index - 1] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return value == 0;
}

std::size_t endOfDigits(std::span<const char> text, std::size_t begin) {
    while (begin < text.size() && isOf(text[begin], hexByte)) {
        ++begin;
    }
    return begin;
}

bool respellOctets(std::span<char> text, std::span<const std::uint8_t> octets) {
    std::size_t begin = 0;
    for (const std::uint8_t octet : octets) {
        const std::size_t end = endOfDigits(text, begin);
        if (!writeDecimal(text.subspan(begin, end - begin), octet)) {
            return false;
        }
        begin = std::min(end + 1, text.size());
    }
    return true;
}

bool respellDigits(std::span<char> text, std::span<const std::uint8_t> octets) {
    std::size_t nibble = 0;
    for (char& digit : text) {
        if (isOf(digit, hexByte)) {
            const unsigned octet = octets[nibble / 2];
            static_cast<void>(writeHex(std::span(&digit, 1), nibble % 2 == 0 ? octet >> 4U : octet & 15U));
            ++nibble;
        }
    }
    return true;
}

/// The groups that "::" leaves out of an IPv6 address.
struct Gap {
    std::size_t place = std::string_view::npos;  ///< of "::" in the text
    std::size_t groups = 0;
};

Gap gapOf(std::string_view text) {
    const std::size_t place = text.find("::");
    if (place == std::string_view::npos) {
        return {};
    }
    const auto colons = static_cast<std::size_t>(std::ranges::count(text, ':'));
    const std::size_t atTheEdges = (place == 0 ? 1U : 0U) + (place + 2 == text.size() ? 1U : 0U);
    const std::size_t dotted = text.find('.') == std::string_view::npos ? 0 : 1;
    return {place, 8 - (colons - atTheEdges + dotted)};
}

bool respellIp6(std::span<char> text, std::span<const std::uint8_t> octets) {
    const Gap gap = gapOf({text.data(), text.size()});
    std::size_t begin = 0;
    std::size_t octet = 0;
    while (begin < text.size()) {
        if (begin == gap.place || (begin > 0 && begin - 1 == gap.place)) {
            const auto left = octets.subspan(octet, gap.groups * 2);
            if (std::ranges::any_of(left, [](std::uint8_t value) { return value != 0; })) {
                return false;
            }
            octet += left.size();
            begin = gap.place + 2;
            continue;
        }
        const std::size_t end = endOfDigits(text, begin);
        if (end < text.size() && text[end] == '.') {
            return respellOctets(text.subspan(begin), octets.subspan(octet, 4));
        }
        const unsigned group = static_cast<unsigned>(octets[octet] << 8U) | octets[octet + 1];
        if (!writeHex(text.subspan(begin, end - begin), group)) {
            return false;
        }
        octet += 2;
        begin = end + 1;
    }
    return true;
}

Address::Octets asIp6(const Address& address) {
    if (address.kind == AddressKind::ip6) {
        return address.octets;
    }
    Address::Octets octets{};
    std::ranges::copy(mappedPrefix, octets.begin());
    std::copy_n(address.octets.begin(), 4, octets.begin() + mappedPrefix.size());
    return octets;
}

bool respellInPlace(std::span<char> text, const Address& address) {
    if (address.kind == AddressKind::mac || address.kind == AddressKind::eui64) {
        return respellDigits(text, address.octets);
    }
    if (std::ranges::find(text, ':') != text.end()) {
        return respellIp6(text, asIp6(address));
    }
    return text.size() == bareIp6Digits ? respellDigits(text, asIp6(address))
                                        : respellOctets(text, std::span(address.octets).first(4));
}

}  // namespace

bool respell(std::span<char> spelling, const Address& address) {
    std::string text(spelling.begin(), spelling.end());
    if (!respellInPlace(text, address)) {
        return false;
    }
    std::ranges::copy(text, spelling.begin());
    return true;
}

SpellingNeeds needsOf(std::string_view spelling, AddressKind kind) {
    const bool dots = spelling.find('.') != std::string_view::npos;
    return {.hexadecimal = kind == AddressKind::ip4 && !dots, .dotted = kind == AddressKind::ip6 && dots};
}

namespace {

/// Whether two digits have the same place in a number: the zeros in front of it, which are often left out,
/// its first digit, or another one. Letters remain letters, so that each keeps its case.
bool sameDigitKind(unsigned original, unsigned candidate, bool leading) {
    const bool sameZeros = !leading || (original == 0) == (candidate == 0);
    return sameZeros && (original < 10) == (candidate < 10);
}

bool sameHexShape(std::uint8_t original, std::uint8_t candidate, bool leading) {
    return sameDigitKind(original >> 4U, candidate >> 4U, leading) &&
           sameDigitKind(original & 15U, candidate & 15U, leading && original < 16);
}

bool sameDecimalShape(std::uint8_t original, std::uint8_t candidate) {
    const auto digits = [](std::uint8_t octet) { return octet < 10 ? 1 : octet < 100 ? 2 : 3; };
    return digits(original) == digits(candidate);
}

/// Whether the zeros at the beginning of the octet `index` are in front of a group of two octets.
bool beginsGroup(const Address::Octets& octets, std::size_t index) {
    return index % 2 == 0 || octets[index - 1] == 0;
}

/// A hardware address has to fit with all its digits, and as part of an IPv6 address.
bool macFits(const Address& mac, std::size_t index, std::uint8_t candidate) {
    const std::uint8_t inverted = index == 0 ? 2 : 0;
    const auto modified = [inverted](std::uint8_t octet) {
        return static_cast<std::uint8_t>(octet ^ inverted);
    };
    Address::Octets eui64{};
    std::ranges::copy(eui64Of(mac, true), eui64.begin());
    const std::size_t place = index < 3 ? index : index + 2;
    return sameHexShape(mac.octets[index], candidate, false) &&
           sameHexShape(modified(mac.octets[index]), modified(candidate), beginsGroup(eui64, place));
}

bool eui64Fits(std::size_t index, std::uint8_t original, std::uint8_t candidate) {
    const bool middle = index == 3 || index == 4;
    return middle ? candidate == original : sameHexShape(original, candidate, false);
}

/// Whether addresses that begin with this octet are replaced at all.
bool isReplacedBeginning(AddressKind kind, std::uint8_t first) {
    Address address{.kind = kind};
    address.octets.fill(1);
    address.octets[0] = first;
    return !describesNobody(address);
}

}  // namespace

bool fits(const Address& original, std::size_t index, std::uint8_t candidate, SpellingNeeds needs) {
    const std::uint8_t octet = original.octets[index];
    if (index == 0 && !isReplacedBeginning(original.kind, candidate)) {
        return false;
    }
    const bool decimal = sameDecimalShape(octet, candidate);
    const bool hexadecimal = sameHexShape(octet, candidate, beginsGroup(original.octets, index));
    switch (original.kind) {
        case AddressKind::ip4:
            return decimal && (hexadecimal || !needs.hexadecimal);
        case AddressKind::ip6:
            return hexadecimal && (decimal || !needs.dotted || index < mappedPrefix.size());
        case AddressKind::mac:
            return macFits(original, index, candidate);
        default:
            return eui64Fits(index, octet, candidate);
    }
}

}  // namespace Report
