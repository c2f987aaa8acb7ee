#include "AddressAssigner.hpp"

#include <algorithm>
#include <functional>
#include <span>

#include "Spelling.hpp"

namespace Report {

namespace {

/// Whether two addresses begin with the same octets.
bool sameBeginning(const Address& one, const Address& other, std::size_t length) {
    return std::equal(one.octets.begin(), one.octets.begin() + static_cast<std::ptrdiff_t>(length),
                      other.octets.begin());
}

/// Whether an IPv6 address could be read as an address of another kind.
bool isAmbiguous(const Address& address) {
    const std::span octets(address.octets);
    const bool mapped = std::ranges::equal(octets.first<12>(), mappedPrefix);
    const bool likeEui64 = octets[6] == 0 && octets[7] == 0xff && octets[8] == 0 && octets[9] == 0xfe;
    return address.kind == AddressKind::ip6 && (mapped || likeEui64);
}

SpellingNeeds both(SpellingNeeds one, SpellingNeeds other) {
    return {.hexadecimal = one.hexadecimal || other.hexadecimal, .dotted = one.dotted || other.dotted};
}

constexpr SpellingNeeds allNeeds{.hexadecimal = true, .dotted = true};

}  // namespace

AddressAssigner::AddressAssigner(AddressKind which, Mapping& target, const Originals& found, Random& source)
    : kind(which), width(widthOf(which)), mapping(target), originals(found), random(source) {
}

void AddressAssigner::add(const Address& original, SpellingNeeds needs, const std::optional<Ending>& ending) {
    items.push_back({original, {}, needs, ending, false});
}

void AddressAssigner::addEarlier() {
    for (const auto& [original, replacement] : mapping.replacements().addresses) {
        if (original.kind == kind) {
            items.push_back({original, replacement, {}, {}, true});
            earlierReplacements.push_back(replacement);
        }
    }
    std::ranges::sort(items, std::less(), &Item::original);
    std::ranges::sort(earlierReplacements, std::less());
}

std::optional<Address> AddressAssigner::assign() {
    addEarlier();
    std::vector<Branch> open{{.end = items.size(), .prefix = {.kind = kind}}};
    while (!open.empty()) {
        const Branch branch = open.back();
        open.pop_back();
        divide(branch, open);
    }
    for (Item& item : items) {
        if (!item.assigned && !search(item)) {
            return item.original;
        }
    }
    return std::nullopt;
}

/// Chooses the next octet of each part of a branch. A part without one is left to search(), which ignores
/// prefixes.
void AddressAssigner::divide(const Branch& branch, std::vector<Branch>& open) {
    applyEndings(branch);
    std::vector<Branch> parts = partsOf(branch);
    std::array<bool, 256> taken{};
    std::vector<Branch*> undecided;
    const auto decide = [&](Branch& part) {
        taken[part.prefix.octets[branch.depth]] = true;
        descend(part, open);
    };
    for (Branch& part : parts) {
        if (takeKnown(part)) {
            decide(part);
        } else if (hasOpenItems(part)) {
            undecided.push_back(&part);
        }
    }
    for (Branch* part : undecided) {
        if (choose(*part, taken)) {
            decide(*part);
        }
    }
}

void AddressAssigner::descend(Branch& part, std::vector<Branch>& open) {
    ++part.depth;
    if (!hasOpenItems(part)) {
        return;
    }
    if (part.depth == width) {
        static_cast<void>(settle(items[part.begin], part.prefix));
    } else {
        open.push_back(part);
    }
}

std::vector<AddressAssigner::Branch> AddressAssigner::partsOf(const Branch& branch) const {
    std::vector<Branch> parts;
    for (std::size_t index = branch.begin; index < branch.end; ++index) {
        const std::uint8_t octet = items[index].original.octets[branch.depth];
        if (parts.empty() || items[parts.back().begin].original.octets[branch.depth] != octet) {
            parts.push_back({.begin = index, .depth = branch.depth, .prefix = branch.prefix});
        }
        parts.back().end = index + 1;
    }
    return parts;
}

void AddressAssigner::applyEndings(const Branch& branch) {
    if (branch.depth + std::tuple_size_v<Ending> != width) {
        return;
    }
    for (std::size_t index = branch.begin; index < branch.end; ++index) {
        Item& item = items[index];
        if (item.ending && !item.assigned) {
            Address candidate = branch.prefix;
            std::ranges::copy(*item.ending,
                              candidate.octets.begin() + static_cast<std::ptrdiff_t>(branch.depth));
            static_cast<void>(settle(item, candidate));
        }
    }
}

/// Takes the next octet from an item that has its replacement, if that begins as the branch does.
bool AddressAssigner::takeKnown(Branch& part) const {
    for (std::size_t index = part.begin; index < part.end; ++index) {
        const Item& item = items[index];
        if (item.assigned && sameBeginning(item.replacement, part.prefix, part.depth)) {
            part.prefix.octets[part.depth] = item.replacement.octets[part.depth];
            return true;
        }
    }
    return false;
}

bool AddressAssigner::hasOpenItems(const Branch& branch) const {
    return std::any_of(items.begin() + static_cast<std::ptrdiff_t>(branch.begin),
                       items.begin() + static_cast<std::ptrdiff_t>(branch.end),
                       [](const Item& item) { return !item.assigned; });
}

/// Chooses an octet that fits into all spellings, and a prefix that is none of an original, if possible.
bool AddressAssigner::choose(Branch& part, const std::array<bool, 256>& taken) {
    SpellingNeeds needs;
    for (std::size_t index = part.begin; index < part.end; ++index) {
        needs = both(needs, items[index].assigned ? SpellingNeeds() : items[index].needs);
    }
    struct Demand {
        bool unusedPrefix;
        SpellingNeeds needs;
    };
    const Item& first = items[part.begin];
    const bool last = part.depth + 1 == width;
    for (const Demand& demand :
         {Demand{true, allNeeds}, Demand{true, needs}, Demand{false, allNeeds}, Demand{false, needs}}) {
        for (const std::uint8_t octet : octetsFor(first.original, part.depth, demand.needs)) {
            part.prefix.octets[part.depth] = octet;
            if (!taken[octet] && !(demand.unusedPrefix && isPrefixUsed(part.prefix, part.depth + 1)) &&
                !(last && (holdsOriginal(part.prefix) || !canReplace(first, part.prefix)))) {
                return true;
            }
        }
    }
    return false;
}

/// The octets that fit, from a random one on.
std::vector<std::uint8_t> AddressAssigner::octetsFor(const Address& original, std::size_t index,
                                                     SpellingNeeds needs) const {
    std::vector<std::uint8_t> octets;
    for (unsigned octet = 0; octet < 256; ++octet) {
        if (fits(original, index, static_cast<std::uint8_t>(octet), needs)) {
            octets.push_back(static_cast<std::uint8_t>(octet));
        }
    }
    if (!octets.empty()) {
        const std::size_t start = random() % octets.size();
        std::rotate(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(start), octets.end());
    }
    return octets;
}

/// Whether an original, or the replacement of an earlier package, begins with the prefix.
bool AddressAssigner::isPrefixUsed(const Address& prefix, std::size_t length) const {
    const auto original = std::ranges::lower_bound(items, prefix, std::less(), &Item::original);
    const auto replacement = std::ranges::lower_bound(earlierReplacements, prefix, std::less());
    return (original != items.end() && sameBeginning(original->original, prefix, length)) ||
           (replacement != earlierReplacements.end() && sameBeginning(*replacement, prefix, length));
}

/// Whether the text of an IPv4 address has an original inside it, such as 10.0.0.1 in 210.0.0.17. Who
/// searches a clean package for an original must not find it.
bool AddressAssigner::holdsOriginal(const Address& candidate) const {
    if (kind != AddressKind::ip4) {
        return false;
    }
    for (const int modulus : {1000, 100, 10}) {
        for (const int divisor : {1, 10, 100}) {
            if (divisor > 1 && candidate.octets[3] < divisor) {
                break;
            }
            Address inside = candidate;
            inside.octets[0] = static_cast<std::uint8_t>(candidate.octets[0] % modulus);
            inside.octets[3] = static_cast<std::uint8_t>(candidate.octets[3] / divisor);
            if (isPrefixUsed(inside, width)) {
                return true;
            }
        }
    }
    return false;
}

bool AddressAssigner::canReplace(const Item& item, const Address& candidate) const {
    for (std::size_t index = 0; index < width; ++index) {
        if (!fits(item.original, index, candidate.octets[index], item.needs)) {
            return false;
        }
    }
    return isFree(candidate);
}

/// Whether a candidate can replace any address, as far as its spelling fits.
bool AddressAssigner::isFree(const Address& candidate) const {
    return !describesNobody(candidate) && !isAmbiguous(candidate) && !isPrefixUsed(candidate, width) &&
           !mapping.isReplacement(candidate) && !originals.mayOccur(candidate);
}

bool AddressAssigner::settle(Item& item, const Address& candidate) {
    return canReplace(item, candidate) && take(item, candidate);
}

bool AddressAssigner::take(Item& item, const Address& candidate) {
    if (!mapping.add(item.original, candidate)) {
        return false;
    }
    item.replacement = candidate;
    item.assigned = true;
    return true;
}

/// Tries all addresses that fit into the spellings.
bool AddressAssigner::search(Item& item) {
    constexpr std::uint64_t mostTries = std::uint64_t{1} << 22;
    std::vector<std::vector<std::uint8_t>> octets;
    std::vector<std::size_t> sizes;
    for (std::size_t index = 0; index < width; ++index) {
        octets.push_back(octetsFor(item.original, index, item.needs));
        sizes.push_back(octets.back().size());
    }
    Odometer odometer(sizes, mostTries, random);
    do {
        Address candidate{.kind = kind};
        for (std::size_t index = 0; index < width; ++index) {
            candidate.octets[index] = octets[index][odometer.choices()[index]];
        }
        if (isFree(candidate) && take(item, candidate)) {
            return true;
        }
    } while (odometer.advance());
    return false;
}

}  // namespace Report
