#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Budget.hpp"
#include "Letters.hpp"
#include "Mapping.hpp"
#include "Spelling.hpp"
#include "TokenScanner.hpp"

namespace Report {

/// A set of hashes of fixed size: a text that was added is in it, and of others a few seem to be.
class SeenFilter {
public:
    /// For the texts that a package of up to `mostBytes` can hold.
    explicit SeenFilter(std::uint64_t mostBytes);

    void add(std::size_t hash);
    bool mayContain(std::size_t hash) const;

private:
    std::size_t place(std::size_t hash) const { return hash & (size - 1); }

    struct Free {
        void operator()(std::uint64_t* memory) const noexcept { std::free(memory); }
    };

    std::size_t size;                             ///< in bits, a power of two
    std::unique_ptr<std::uint64_t[], Free> bits;  ///< pages that stay zero use no memory
};

/// What a package has to hide, and what else is in it. A replacement must not look like something that the
/// package already contains, or restoring would change that, too.
class Originals : public TokenHandler {
public:
    /// `known` are replacements of earlier packages: if they occur in this one, they are originals as well.
    /// Memory counts towards the budget. Both must outlive this object.
    Originals(const Mapping& known, Budget& memory)
        : earlier(known), budget(memory), seen(memory.limits().maxBytes) {}

    /// Takes the tokens of a text.
    bool address(const FoundAddress& token, std::span<char> spelling) override;
    void word(std::span<char> text) override;

    /// Takes a folded name, from a place that names it.
    void addName(const std::string& name);

    /// Call this after the last token. Digits without separators that may be an EUI-64, or an IPv6 address
    /// made from one, become an address if their hardware address is known.
    void settle();

    /// The addresses, with what their spellings need. Those that describe nobody are not among them.
    const std::unordered_map<Address, SpellingNeeds, AddressHash>& addresses() const { return found; }
    const std::set<std::string, std::less<>>& names() const { return foundNames; }

    /// Whether something in the texts may be taken for this address or folded word.
    bool mayOccur(const Address& address) const { return seen.mayContain(AddressHash()(address)); }
    bool mayOccur(std::string_view word) const { return seen.mayContain(foldedHash(word)); }

private:
    using AddressTable = std::unordered_map<Address, SpellingNeeds, AddressHash>;

    void addTo(AddressTable& table, const Address& address, SpellingNeeds needs);

    const Mapping& earlier;
    Budget& budget;
    AddressTable found;
    AddressTable undecided;  ///< until settle()
    std::set<std::string, std::less<>> foundNames;
    SeenFilter seen;
    std::string foldedWord;
};

}  // namespace Report
