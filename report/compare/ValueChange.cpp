#include "ValueChange.hpp"

#include <map>
#include <string_view>
#include <tuple>

#include "Decimal.hpp"

namespace Report {
namespace {

using Key = std::tuple<std::string_view, std::string_view, std::size_t>;

Key keyOf(const Value& value) {
    return {value.title, value.name, value.occurrence};
}

/// The change between two values of one name, or no value if they are equal.
std::optional<ValueChange> changeOf(const Value& before, const Value& after, std::optional<double> seconds) {
    if (before.text == after.text) {
        return std::nullopt;
    }
    ValueChange change{.before = &before, .after = &after};
    const std::optional<Decimal> earlier = Decimal::parse(before.text);
    const std::optional<Decimal> later = Decimal::parse(after.text);
    if (!earlier || !later) {
        return change;
    }
    const Decimal difference = later->minus(*earlier);
    if (difference.isZero()) {
        return std::nullopt;
    }
    change.difference = difference.signedText();
    change.fell = difference.isNegative();
    if (seconds) {
        change.perSecond = difference.approximate() / *seconds;
    }
    return change;
}

}  // namespace

void compareValues(std::span<const Value* const> before, std::span<const Value* const> after,
                   std::optional<double> seconds, std::vector<ValueChange>& changes) {
    std::map<Key, const Value*> earlier;
    for (const Value* value : before) {
        earlier.emplace(keyOf(*value), value);
    }
    for (const Value* value : after) {
        const auto found = earlier.find(keyOf(*value));
        if (found == earlier.end()) {
            changes.push_back({.after = value});
            continue;
        }
        if (std::optional<ValueChange> change = changeOf(*found->second, *value, seconds)) {
            changes.push_back(*std::move(change));
        }
        earlier.erase(found);
    }
    for (const Value* value : before) {
        if (earlier.contains(keyOf(*value))) {
            changes.push_back({.before = value});
        }
    }
}

}  // namespace Report
