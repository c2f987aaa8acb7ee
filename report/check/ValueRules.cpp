#include "ValueRules.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

namespace Report {
namespace {

constexpr double hundredPercent = 100;

std::vector<std::string> namePatterns(const std::vector<Rule>& rules) {
    std::vector<std::string> patterns;
    for (const Rule& rule : rules) {
        if (rule.value) {
            patterns.push_back(*rule.value);
        }
    }
    return patterns;
}

bool compare(double left, Relation relation, double right) {
    switch (relation) {
        case Relation::less:
            return left < right;
        case Relation::lessOrEqual:
            return left <= right;
        case Relation::equal:
            return !(left < right) && !(left > right);
        case Relation::notEqual:
            return left < right || left > right;
        case Relation::greaterOrEqual:
            return left >= right;
        case Relation::greater:
            return left > right;
    }
    return false;
}

std::string shownValue(const Value& value) {
    const std::string title = value.title.substr(0, value.title.find_last_not_of(": \t") + 1);
    return (title.empty() ? "" : title + " / ") + value.name + " = " + value.text;
}

/// "2100 (bytes in all)".
std::string shownTotal(const std::string& names, double total) {
    std::array<char, 32> number{};
    std::snprintf(number.data(), number.size(), "%.15g", total);
    return std::string(number.data()) + " (" + names + ")";
}

}  // namespace

ValueRules::ValueRules(const std::vector<Rule>& allRules)
    : rules(allRules), nameSet(namePatterns(allRules), PatternSet::Fit::whole) {
    for (std::size_t index = 0; index < rules.size(); ++index) {
        const Rule& rule = rules[index];
        if (rule.value) {
            valueRules.push_back({index, PartPattern(rule.where), RulePattern(*rule.value, rule.except)});
        }
    }
}

std::vector<ValueRules::Naming> ValueRules::findNamings(const Value& value) {
    std::vector<std::size_t> places;
    nameSet.find(value.name, places);
    std::vector<Naming> found;
    for (const std::size_t place : places) {
        ValueRule& valueRule = valueRules[place];
        if (!valueRule.pattern.counts(value.name) || !valueRule.where.fits(value.part)) {
            continue;
        }
        const Rule& rule = rules[valueRule.index];
        Naming& naming = found.emplace_back(Naming{&rule, valueRule.index, {}});
        for (const std::string& form : rule.of) {
            naming.totals.push_back(valueRule.pattern.expand(value.name, form));
        }
    }
    return found;
}

const std::vector<ValueRules::Naming>& ValueRules::namingsOf(const Value& value) {
    constexpr std::size_t largest = std::size_t{256} << 10;  // bytes of keys that a hostile package can leave
    std::string key = value.part + '\0' + value.name;
    if (const auto known = namings.find(key); known != namings.end()) {
        return known->second;
    }
    if (namingsSize > largest) {
        namings.clear();
        namingsSize = 0;
    }
    namingsSize += key.size();
    return namings.emplace(std::move(key), findNamings(value)).first->second;
}

bool ValueRules::names(const Value& value) {
    return !namingsOf(value).empty();
}

std::optional<std::string> ValueRules::evidenceOf(const Naming& naming, const Value& value,
                                                  PackageNumbers& numbers) {
    const Comparison& comparison = naming.rule->comparison;
    if (!comparison.percent) {
        const bool found = compare(numberOf(value), comparison.relation, comparison.number);
        return found ? std::optional(shownValue(value)) : std::nullopt;
    }
    for (const std::string& total : naming.totals) {
        const std::optional<double> whole = numbers.sumOf(value, total);
        if (whole && *whole > 0) {
            const double share = numberOf(value) / *whole * hundredPercent;
            return compare(share, comparison.relation, comparison.number)
                       ? std::optional(shownValue(value) + " of " + shownTotal(total, *whole))
                       : std::nullopt;
        }
    }
    return std::nullopt;
}

void ValueRules::apply(const Package& package, FindingList& findings) {
    PackageNumbers numbers(package);
    for (const Value& value : package.values) {
        for (const Naming& naming : namingsOf(value)) {
            if (const auto evidence = evidenceOf(naming, value, numbers)) {
                findings.add(naming.index, value.part, value.part, *evidence);
            }
        }
    }
}

}  // namespace Report
