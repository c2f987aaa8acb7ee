#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Mapping.hpp"
#include "Odometer.hpp"
#include "Originals.hpp"

namespace Report {

/// Chooses replacements for the addresses of one kind. Two addresses that begin with the same octets get
/// replacements that do, too, and others do not, as long as there are free ones. A replacement
///
/// - fits into the spellings of its original,
/// - is no original of the mapping or of the package, and no other address's replacement,
/// - does not occur in the package otherwise.
class AddressAssigner {
public:
    /// All must outlive the assigner. `target` holds the replacements of earlier packages, which remain, and
    /// receives the new ones.
    AddressAssigner(AddressKind which, Mapping& target, const Originals& found, Random& source);

    /// The last eight octets of an address.
    using Ending = std::array<std::uint8_t, 8>;

    /// An address without a replacement. If the replacement should end with certain octets, since they are
    /// another address's replacement, `ending` holds them.
    void add(const Address& original, SpellingNeeds needs, const std::optional<Ending>& ending = {});

    /// Chooses all replacements. Returns an address that has none, if there is one.
    [[nodiscard]] std::optional<Address> assign();

private:
    struct Item {
        Address original;
        Address replacement;
        SpellingNeeds needs;
        std::optional<Ending> ending;
        bool assigned = false;
    };

    /// The items whose originals begin with the same octets, and what their replacements begin with.
    struct Branch {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t depth = 0;  ///< number of these octets
        Address prefix;         ///< of the replacements; zeros behind it
    };

    void addEarlier();
    void divide(const Branch& branch, std::vector<Branch>& open);
    void descend(Branch& part, std::vector<Branch>& open);
    std::vector<Branch> partsOf(const Branch& branch) const;
    void applyEndings(const Branch& branch);
    bool takeKnown(Branch& part) const;
    std::vector<std::uint8_t> octetsFor(const Address& original, std::size_t index,
                                        SpellingNeeds needs) const;
    bool choose(Branch& part, const std::array<bool, 256>& taken);
    bool search(Item& item);
    bool hasOpenItems(const Branch& branch) const;
    bool canReplace(const Item& item, const Address& candidate) const;
    bool holdsOriginal(const Address& candidate) const;
    bool isPrefixUsed(const Address& prefix, std::size_t length) const;
    bool isFree(const Address& candidate) const;
    bool settle(Item& item, const Address& candidate);
    bool take(Item& item, const Address& candidate);

    AddressKind kind;
    std::size_t width;
    Mapping& mapping;
    const Originals& originals;
    Random& random;
    std::vector<Item> items;                   ///< sorted by the original once assign() begins
    std::vector<Address> earlierReplacements;  ///< sorted
};

}  // namespace Report
