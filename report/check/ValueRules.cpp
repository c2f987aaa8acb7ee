#include "ValueRules.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>
#include <variant>

namespace Report {
namespace {

constexpr double hundredPercent = 100;
constexpr std::string_view sumSign = " + ";

std::vector<std::string> namePatterns(const std::vector<Rule>& rules) {
    std::vector<std::string> patterns;
    for (const Rule& rule : rules) {
        if (rule.value) {
            patterns.push_back(*rule.value);
        }
    }
    return patterns;
}

/// A number that has no type is too large for one.
double numberOf(const Value& value) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    return std::visit(
        [&](const auto& number) {
            if constexpr (std::is_same_v<std::decay_t<decltype(number)>, std::monostate>) {
                return value.text.starts_with('-') ? -infinite : infinite;
            } else {
                return static_cast<double>(number);
            }
        },
        value.number);
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

std::string keyOf(const Value& value, std::string_view name) {
    std::string key = value.part;
    key.append(1, '\0').append(value.title).append(1, '\0').append(name).append(1, '\0');
    return key.append(std::to_string(value.occurrence));
}

/// The sum of the values of "NAME + NAME". No value if one of them is missing.
std::optional<double> sumOf(const Value& value, std::string_view names,
                            const std::unordered_map<std::string, double>& numbers) {
    double sum = 0;
    while (!names.empty()) {
        const std::size_t end = std::min(names.find(sumSign), names.size());
        const auto found = numbers.find(keyOf(value, names.substr(0, end)));
        if (found == numbers.end()) {
            return std::nullopt;
        }
        sum += found->second;
        names.remove_prefix(std::min(end + sumSign.size(), names.size()));
    }
    return sum;
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

bool ValueRules::isNamed(ValueRule& rule, const Value& value) {
    return rule.pattern.counts(value.name) && rule.where.fits(value.part);
}

bool ValueRules::names(const Value& value) {
    std::vector<std::size_t> found;
    nameSet.find(value.name, found);
    return std::ranges::any_of(found, [&](std::size_t index) { return isNamed(valueRules[index], value); });
}

std::optional<std::string> ValueRules::evidenceOf(ValueRule& valueRule, const Value& value,
                                                  const Numbers& numbers) const {
    const Rule& rule = rules[valueRule.index];
    const Comparison& comparison = rule.comparison;
    if (!comparison.percent) {
        const bool found = compare(numberOf(value), comparison.relation, comparison.number);
        return found ? std::optional(shownValue(value)) : std::nullopt;
    }
    for (const std::string& form : rule.of) {
        const std::string names = valueRule.pattern.expand(value.name, form);
        const std::optional<double> whole = sumOf(value, names, numbers);
        if (whole && *whole > 0) {
            const double share = numberOf(value) / *whole * hundredPercent;
            return compare(share, comparison.relation, comparison.number)
                       ? std::optional(shownValue(value) + " of " + shownTotal(names, *whole))
                       : std::nullopt;
        }
    }
    return std::nullopt;
}

void ValueRules::apply(const Package& package, FindingList& findings) {
    Numbers numbers;
    for (const Value& value : package.values) {
        numbers.emplace(keyOf(value, value.name), numberOf(value));
    }
    std::vector<std::size_t> found;
    for (const Value& value : package.values) {
        nameSet.find(value.name, found);
        for (const std::size_t place : found) {
            ValueRule& valueRule = valueRules[place];
            if (!isNamed(valueRule, value)) {
                continue;
            }
            if (const auto evidence = evidenceOf(valueRule, value, numbers)) {
                findings.add(valueRule.index, value.part, value.part, *evidence);
            }
        }
    }
}

}  // namespace Report
