#include "Rule.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace Report {
namespace {

// In the order of the enumeration.
constexpr std::array<std::string_view, 15> factNames{
    "overlap",           "log full",        "not text",           "old collector",
    "perhaps left over", "clock unset",     "odd member",         "zone unknown",
    "sidecar absent",    "sidecar foreign", "sidecar unreadable", "unknown complaint",
    "run failed",        "errors missing",  "dumps removed"};
static_assert(factNames.size() == static_cast<std::size_t>(Fact::dumpsRemoved) + 1);

struct RelationSign {
    std::string_view sign;
    Relation relation;
};

// A sign before its own beginning.
constexpr std::array relationSigns{
    RelationSign{"<=", Relation::lessOrEqual},    RelationSign{"<", Relation::less},
    RelationSign{">=", Relation::greaterOrEqual}, RelationSign{">", Relation::greater},
    RelationSign{"!=", Relation::notEqual},       RelationSign{"=", Relation::equal},
};

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    return start == std::string_view::npos ? std::string_view()
                                           : text.substr(start, text.find_last_not_of(' ') - start + 1);
}

}  // namespace

std::string_view nameOf(Fact fact) {
    return factNames.at(static_cast<std::size_t>(fact));
}

std::optional<Fact> factOf(std::string_view name) {
    const auto* const found = std::ranges::find(factNames, name);
    return found == factNames.end() ? std::nullopt
                                    : std::optional(static_cast<Fact>(found - factNames.begin()));
}

std::optional<Comparison> parseComparison(std::string_view text) {
    text = trimmed(text);
    const auto* const sign = std::ranges::find_if(
        relationSigns, [&](const RelationSign& row) { return text.starts_with(row.sign); });
    if (sign == relationSigns.end()) {
        return std::nullopt;
    }
    Comparison comparison{.relation = sign->relation};
    text = trimmed(text.substr(sign->sign.size()));
    comparison.percent = text.ends_with('%');
    text = trimmed(text.substr(0, text.size() - (comparison.percent ? 1 : 0)));
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), comparison.number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(comparison) : std::nullopt;
}

}  // namespace Report
