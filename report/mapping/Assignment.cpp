#include "Assignment.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <span>

#include "AddressAssigner.hpp"
#include "FixedNames.hpp"
#include "NameAssigner.hpp"

namespace Report {

namespace {

[[noreturn]] void refuse(const std::string& original) {
    throw NoReplacement("no replacement of the same length is left for " + original);
}

/// The hardware address from which another address was made, and in which form.
struct Source {
    Address mac;
    bool modified = false;
};

/// Gives the addresses of each kind replacements. Hardware addresses are first, because others contain them.
class AddressAssignment {
public:
    AddressAssignment(const Originals& found, Mapping& target, Random& source)
        : originals(found), mapping(target), random(source) {}

    void run() {
        for (const auto& [address, needs] : originals.addresses()) {
            if (mapping.isOriginal(address)) {
                continue;
            }
            open[address] = needs;
            if (const std::optional<Source> source = sourceOf(address)) {
                sources[address] = *source;
                if (!mapping.isOriginal(source->mac)) {
                    open.try_emplace(source->mac);
                }
            }
        }
        for (const AddressKind kind :
             {AddressKind::mac, AddressKind::eui64, AddressKind::ip4, AddressKind::ip6}) {
            assign(kind);
        }
    }

private:
    bool isKnown(const Address& address) const {
        return originals.addresses().contains(address) || mapping.isOriginal(address);
    }

    /// Of the two addresses that a bare EUI-64 can have been made from, the one that is known otherwise.
    std::optional<Source> sourceOf(const Address& address) const {
        const bool ip6 = address.kind == AddressKind::ip6;
        if (!ip6 && address.kind != AddressKind::eui64) {
            return std::nullopt;
        }
        const std::span<const std::uint8_t, 8> ending =
            std::span(address.octets).subspan(ip6 ? 8 : 0).first<8>();
        const std::optional<Address> plain = macIn(ending, false);
        const std::optional<Address> modified = macIn(ending, true);
        if (!plain || describesNobody(*plain) || describesNobody(*modified)) {
            return std::nullopt;
        }
        const bool takeModified = ip6 || (isKnown(*modified) && !isKnown(*plain));
        return Source{.mac = takeModified ? *modified : *plain, .modified = takeModified};
    }

    void assign(AddressKind kind) {
        AddressAssigner assigner(kind, mapping, originals, random);
        for (const auto& [address, needs] : open) {
            if (address.kind == kind) {
                assigner.add(address, needs, endingFor(address));
            }
        }
        if (const std::optional<Address> original = assigner.assign()) {
            refuse(textOf(*original));
        }
    }

    std::optional<AddressAssigner::Ending> endingFor(const Address& address) const {
        const auto source = sources.find(address);
        if (source == sources.end()) {
            return std::nullopt;
        }
        return eui64Of(mapping.replacements().addresses.at(source->second.mac), source->second.modified);
    }

    const Originals& originals;
    Mapping& mapping;
    Random& random;
    std::map<Address, SpellingNeeds> open;
    std::map<Address, Source> sources;
};

void assignNames(const Originals& originals, Mapping& mapping, Random& random) {
    const auto isFree = [&](std::string_view word) {
        return !isFixedName(word) && !originals.names().contains(word) && !mapping.isOriginal(word) &&
               !mapping.isReplacement(word) && !originals.mayOccur(word);
    };
    for (const std::string& name : originals.names()) {
        if (mapping.isOriginal(name)) {
            continue;
        }
        const std::optional<std::string> replacement = chooseName(name, random, isFree);
        if (!replacement || !mapping.add(name, *replacement)) {
            refuse(name);
        }
    }
}

}  // namespace

void assignReplacements(const Originals& originals, Mapping& mapping, Random& random) {
    AddressAssignment(originals, mapping, random).run();
    assignNames(originals, mapping, random);
}

}  // namespace Report
