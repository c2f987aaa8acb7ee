#include <algorithm>
#include <array>
#include <span>

#include "AddressSyntax.hpp"
#include "ByteClass.hpp"

namespace Report {

namespace {

/// A spelling of hardware addresses.
struct Layout {
    AddressKind kind;
    char separator;                     ///< of the groups; NUL for bare digits
    std::array<std::size_t, 8> groups;  ///< digits of each group, then zeros

    /// Where the last separator stands in the spelling; 0 for bare digits.
    constexpr std::size_t lastSeparator() const {
        std::size_t place = 0;
        for (std::size_t group = 1; group < groups.size() && groups[group] > 0; ++group) {
            place += groups[group - 1] + (group > 1 ? 1 : 0);
        }
        return place;
    }
};

/// Longer spellings first, since shorter ones are pieces of them.
constexpr std::array layouts{
    Layout{AddressKind::eui64, ':', {2, 2, 2, 2, 2, 2, 2, 2}},
    Layout{AddressKind::eui64, '-', {2, 2, 2, 2, 2, 2, 2, 2}},
    Layout{AddressKind::eui64, '.', {4, 4, 4, 4}},
    Layout{AddressKind::eui64, ':', {4, 4, 4, 4}},
    Layout{AddressKind::eui64, '.', {6, 4, 6}},
    Layout{AddressKind::eui64, '\0', {16}},
    Layout{AddressKind::mac, ':', {2, 2, 2, 2, 2, 2}},
    Layout{AddressKind::mac, '-', {2, 2, 2, 2, 2, 2}},
    Layout{AddressKind::mac, '.', {4, 4, 4}},
    Layout{AddressKind::mac, '\0', {12}},
};

constexpr auto lastSeparators = [] {
    std::array<std::size_t, layouts.size()> places{};
    std::ranges::transform(layouts, places.begin(), &Layout::lastSeparator);
    return places;
}();

/// Appends the octets of hexadecimal digits, with the digits before them if those were odd in number.
void appendDigits(std::string_view digits, Address& address, std::size_t& nibbles) {
    for (const char digit : digits) {
        std::uint8_t& octet = address.octets[nibbles / 2];
        octet = static_cast<std::uint8_t>((unsigned{octet} << 4U) | hexValue(digit));
        ++nibbles;
    }
}

/// Whether the chain of groups goes on with `neighbour`. With hyphens, a group of any length counts, since
/// dates and UUIDs have such groups.
bool continues(std::string_view text, Run neighbour, std::size_t width, char separator) {
    const bool group = separator == '-' ? neighbour.size() > 0 : neighbour.size() == width;
    return group && isHex(text, neighbour);
}

bool continuesBefore(std::string_view text, std::size_t begin, std::size_t width, char separator) {
    if (begin == 0 || text[begin - 1] != separator) {
        return false;
    }
    Run before{begin - 1, begin - 1};
    while (before.begin > 0 && before.size() + 1 < farthestLookBack &&
           isOf(text[before.begin - 1], alnumByte)) {
        --before.begin;
    }
    return continues(text, before, width, separator);
}

bool continuesBehind(std::string_view text, std::size_t end, std::size_t width, char separator) {
    return end < text.size() && text[end] == separator &&
           continues(text, runAt(text, end + 1, farthestLookBack), width, separator);
}

std::optional<FoundAddress> readLayout(std::string_view text, std::size_t begin, const Layout& layout) {
    FoundAddress found{.address = {.kind = layout.kind}, .begin = begin, .end = begin};
    std::size_t nibbles = 0;
    std::size_t width = 0;
    for (const std::size_t digits : layout.groups) {
        if (digits == 0) {
            break;
        }
        if (nibbles > 0) {
            if (found.end >= text.size() || text[found.end] != layout.separator) {
                return std::nullopt;
            }
            ++found.end;
        }
        const Run group = runAt(text, found.end, digits + 1);
        if (group.size() != digits || !isHex(text, group)) {
            return std::nullopt;
        }
        appendDigits(text.substr(group.begin, digits), found.address, nibbles);
        found.end = group.end;
        width = digits;
    }
    found.certain = layout.separator != '\0' && !continuesBefore(text, begin, width, layout.separator) &&
                    !continuesBehind(text, found.end, width, layout.separator);
    return found;
}

/// Whether a text has the first and the last separator of a layout. Most texts, such as times, fail here.
bool canHave(std::string_view text, Run run, const Layout& layout, std::size_t lastSeparator) {
    if (run.size() != layout.groups[0]) {
        return false;
    }
    const std::size_t last = run.begin + lastSeparator;
    return layout.separator == '\0' ||
           (last < text.size() && text[last] == layout.separator && text[run.end] == layout.separator);
}

}  // namespace

std::optional<FoundAddress> hardwareAddressAt(std::string_view text, Run run) {
    for (std::size_t index = 0; index < layouts.size(); ++index) {
        const Layout& layout = layouts[index];
        if (!canHave(text, run, layout, lastSeparators[index])) {
            continue;
        }
        std::optional<FoundAddress> found = readLayout(text, run.begin, layout);
        if (found &&
            (layout.kind == AddressKind::mac || macIn(std::span(found->address.octets).first<8>(), false))) {
            return found;
        }
    }
    return std::nullopt;
}

}  // namespace Report
