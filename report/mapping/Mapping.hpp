#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Address.hpp"
#include "WordFilter.hpp"

namespace Report {

/// A hash of texts that finds std::string keys by std::string_view.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>()(text);
    }
};

/// What replaces what, in one direction. Names are folded.
struct Replacements {
    std::unordered_map<Address, Address, AddressHash> addresses;
    std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> names;
    WordFilter filter;  ///< of `names`
};

/// Originals and their replacements, one to one: an original has one replacement, and two originals never
/// have the same one. An original can be the replacement of another one, if a package holds what an earlier
/// run chose.
class Mapping {
public:
    /// From originals to replacements.
    const Replacements& replacements() const { return forward; }
    /// From replacements to originals.
    const Replacements& originals() const { return backward; }

    bool isOriginal(const Address& address) const { return forward.addresses.contains(address); }
    bool isOriginal(std::string_view name) const { return contains(forward, name); }
    bool isReplacement(const Address& address) const { return backward.addresses.contains(address); }
    bool isReplacement(std::string_view name) const { return contains(backward, name); }

    /// Returns false, and adds nothing, if the original has a replacement or the replacement an original.
    [[nodiscard]] bool add(const Address& original, const Address& replacement);
    [[nodiscard]] bool add(const std::string& original, const std::string& replacement);

private:
    static bool contains(const Replacements& replacements, std::string_view name) {
        return replacements.filter.mayContain(name) &&
               replacements.names.find(name) != replacements.names.end();
    }

    Replacements forward;
    Replacements backward;
};

}  // namespace Report
