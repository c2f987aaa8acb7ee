#include <algorithm>
#include <array>
#include <span>

#include "AddressSyntax.hpp"
#include "ByteClass.hpp"

namespace Report {

namespace {

constexpr std::size_t nowhere = std::string_view::npos;

bool isDigitAt(std::string_view text, std::size_t at) {
    return at < text.size() && isOf(text[at], digitByte);
}
bool isAlnumAt(std::string_view text, std::size_t at) {
    return at < text.size() && isOf(text[at], alnumByte);
}
bool isAt(std::string_view text, std::size_t at, char byte) {
    return at < text.size() && text[at] == byte;
}

/// Reads a decimal number of up to three digits and up to 255. Returns its end, or `nowhere`.
std::size_t readOctet(std::string_view text, std::size_t begin, std::uint8_t& octet) {
    unsigned value = 0;
    std::size_t end = begin;
    while (end - begin < 4 && isDigitAt(text, end)) {
        value = value * 10 + static_cast<unsigned>(text[end] - '0');
        ++end;
    }
    if (end == begin || end - begin > 3 || value > 255) {
        return nowhere;
    }
    octet = static_cast<std::uint8_t>(value);
    return end;
}

/// Reads octets with dots between them. Returns their end, or `nowhere`.
std::size_t readOctets(std::string_view text, std::size_t begin, std::span<std::uint8_t> octets) {
    std::size_t end = readOctet(text, begin, octets[0]);
    for (std::uint8_t& octet : octets.subspan(1)) {
        if (end == nowhere || !isAt(text, end, '.')) {
            return nowhere;
        }
        end = readOctet(text, end + 1, octet);
    }
    return end;
}

/// The end of the number behind a dot at `dot`, or `dot` if there is none.
std::size_t nextNumber(std::string_view text, std::size_t dot) {
    std::size_t end = dot + 1;
    while (isAt(text, dot, '.') && end - dot < farthestLook / 4 && isDigitAt(text, end)) {
        ++end;
    }
    return end == dot + 1 ? dot : end;
}

}  // namespace

std::optional<FoundAddress> ip4At(std::string_view text, std::size_t begin) {
    FoundAddress found{.address = {.kind = AddressKind::ip4}, .begin = begin};
    found.end = readOctets(text, begin, std::span(found.address.octets).first<4>());
    if (found.end == nowhere) {
        return std::nullopt;
    }
    const bool continues = begin >= 2 && text[begin - 1] == '.' && isOf(text[begin - 2], digitByte);
    const std::size_t fifth = nextNumber(text, found.end);
    const bool sixth = fifth != found.end && nextNumber(text, fifth) != fifth;
    found.certain = !continues && !sixth;
    return found;
}

namespace {

/// The IPv4 address that an IPv6 address holds, else this address.
Address withoutMapping(const Address& address) {
    const auto& octets = address.octets;
    if (!std::ranges::equal(std::span(octets).first<12>(), mappedPrefix)) {
        return address;
    }
    return {.kind = AddressKind::ip4, .octets = {octets[12], octets[13], octets[14], octets[15]}};
}

/// Whether the text has a number of three digits at `begin`. A group of an IPv6 address that begins with one
/// is no group beside three octets: its replacement could complete an IPv4 address.
bool hasThreeDigits(std::string_view text, std::size_t begin) {
    std::size_t end = begin;
    while (end - begin < 4 && isDigitAt(text, end)) {
        ++end;
    }
    return end - begin == 3;
}

/// Reads the groups of an IPv6 address.
class Ip6Reader {
public:
    explicit Ip6Reader(std::string_view whole) : text(whole) {}

    std::optional<FoundAddress> read(std::size_t begin) {
        end = begin;
        if (!readGroups() || !isComplete() || isAlnumAt(text, end)) {
            return std::nullopt;
        }
        return FoundAddress{.address = withoutMapping(address()), .begin = begin, .end = end};
    }

private:
    static constexpr std::size_t groupCount = 8;
    static constexpr std::size_t noGap = groupCount + 2;

    /// False if the text cannot be an address.
    bool readGroups() {
        while (count <= groupCount) {
            const bool doubleColon = isAt(text, end, ':') && isAt(text, end + 1, ':');
            if (doubleColon && gap != noGap) {
                return false;
            }
            if (doubleColon) {
                gap = count;
                end += 2;
            } else if (count > 0 && !skipColon()) {
                return true;
            }
            if (!readGroup()) {
                return doubleColon;
            }
        }
        return true;
    }

    /// Skips a colon that separates two groups.
    bool skipColon() {
        if (dotted || !groupFollows()) {
            return false;
        }
        ++end;
        return true;
    }

    bool groupFollows() const { return isAt(text, end, ':') && isGroup(runAt(text, end + 1, 5)); }

    bool isGroup(Run run) const { return run.size() >= 1 && run.size() <= 4 && isHex(text, run); }

    bool readGroup() {
        const Run run = runAt(text, end, 5);
        if (!isGroup(run)) {
            return false;
        }
        if (isAt(text, run.end, '.') && canEndDotted()) {
            if (readDottedEnd()) {
                return true;
            }
            if (isLikeDottedEnd(run)) {
                return false;
            }
        }
        unsigned value = 0;
        for (const char digit : text.substr(run.begin, run.size())) {
            value = (value << 4U) | hexValue(digit);
        }
        allTwoDigits = allTwoDigits && run.size() == 2;
        append(value);
        end = run.end;
        return true;
    }

    /// Whether an IPv4 address can stand in place of the last two groups.
    bool canEndDotted() const { return gap == noGap ? count == groupCount - 2 : count + 2 <= groupCount; }

    /// Whether the group would be the beginning of an IPv4 address if its value were smaller.
    bool isLikeDottedEnd(Run group) const {
        std::array<std::uint8_t, 3> octets{};
        return group.size() == 3 && hasThreeDigits(text, group.begin) &&
               readOctets(text, group.end + 1, octets) != nowhere;
    }

    /// Reads an IPv4 address in place of the last two groups.
    bool readDottedEnd() {
        std::array<std::uint8_t, 4> octets{};
        const std::size_t behind = readOctets(text, end, octets);
        if (behind == nowhere) {
            return false;
        }
        append(static_cast<unsigned>(octets[0] << 8U) | octets[1]);
        append(static_cast<unsigned>(octets[2] << 8U) | octets[3]);
        end = behind;
        dotted = true;
        return true;
    }

    void append(unsigned group) {
        groups[count] = group;
        ++count;
    }

    bool isComplete() {
        if (gap != noGap) {
            return count < groupCount;
        }
        if (count == groupCount + 1 && !allTwoDigits && !groupFollows()) {
            end = text.rfind(':', end - 1);  // the ninth is a port
            count = groupCount;
        }
        return count == groupCount;
    }

    Address address() const {
        Address result{.kind = AddressKind::ip6};
        for (std::size_t index = 0; index < count; ++index) {
            const std::size_t place = index < gap ? index : index + groupCount - count;
            result.octets[place * 2] = static_cast<std::uint8_t>(groups[index] >> 8U);
            result.octets[place * 2 + 1] = static_cast<std::uint8_t>(groups[index] & 0xffU);
        }
        return result;
    }

    std::string_view text;
    std::array<unsigned, groupCount + 2> groups{};
    std::size_t count = 0;
    std::size_t gap = noGap;  ///< number of groups before "::"
    std::size_t end = 0;
    bool dotted = false;
    bool allTwoDigits = true;
};

/// Whether three decimal numbers, each with a dot behind it, end at `end`.
bool areThreeNumbersBefore(std::string_view text, std::size_t end) {
    std::size_t place = end;
    for (int number = 0; number < 3; ++number) {
        if (place == 0 || text[place - 1] != '.') {
            return false;
        }
        const std::size_t dot = --place;
        while (place > 0 && dot - place < 4 && isOf(text[place - 1], digitByte)) {
            --place;
        }
        if (place == dot || dot - place > 3) {
            return false;
        }
    }
    return true;
}

/// Whether an IPv6 address can begin here: not inside a word, and not inside a chain of groups.
bool canBeginIp6(std::string_view text, std::size_t begin) {
    if (begin == 0) {
        return true;
    }
    if (isOf(text[begin - 1], alnumByte)) {
        return false;
    }
    if (text[begin - 1] != ':') {
        return !hasThreeDigits(text, begin) || !areThreeNumbersBefore(text, begin);
    }
    std::size_t group = begin - 1;
    while (group > 0 && begin - group < farthestLookBack && isOf(text[group - 1], alnumByte)) {
        --group;
    }
    const Run before{group, begin - 1};
    const bool doubleColon = text[begin] == ':' || before.size() == 0;
    return doubleColon ? text[begin] != ':' : before.size() > 4 || !isHex(text, before);
}

}  // namespace

std::optional<FoundAddress> ip6At(std::string_view text, std::size_t begin) {
    return canBeginIp6(text, begin) ? Ip6Reader(text).read(begin) : std::nullopt;
}

std::optional<FoundAddress> bareIp6At(std::string_view text, Run run) {
    Address address{.kind = AddressKind::ip6};
    for (std::size_t place = run.begin; place < run.end; place += 2) {
        address.octets[(place - run.begin) / 2] =
            static_cast<std::uint8_t>(hexValue(text[place]) << 4U | hexValue(text[place + 1]));
    }
    return FoundAddress{
        .address = withoutMapping(address), .begin = run.begin, .end = run.end, .certain = false};
}

Run runAt(std::string_view text, std::size_t begin, std::size_t most) {
    Run run{begin, begin};
    while (run.size() < most && isAlnumAt(text, run.end)) {
        ++run.end;
    }
    return run;
}

bool isHex(std::string_view text, Run run) {
    return std::ranges::all_of(text.substr(run.begin, run.size()),
                               [](char byte) { return isOf(byte, hexByte); });
}

}  // namespace Report
