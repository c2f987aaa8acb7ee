#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "FindingList.hpp"
#include "Package.hpp"
#include "PartPattern.hpp"
#include "PatternSet.hpp"
#include "Rule.hpp"
#include "RulePattern.hpp"

namespace Report {

/// The rules on values.
class ValueRules {
public:
    /// The rules must outlive this object.
    explicit ValueRules(const std::vector<Rule>& allRules);

    void apply(const Package& package, FindingList& findings);

    /// Whether a rule names this value, whatever its number is.
    bool names(const Value& value);

private:
    struct ValueRule {
        std::size_t index = 0;  // in all rules
        PartPattern where;
        RulePattern pattern;
    };
    using Numbers = std::unordered_map<std::string, double>;  // by part, title, name and occurrence

    static bool isNamed(ValueRule& rule, const Value& value);
    /// The value as evidence, or no value if the rule does not find it.
    std::optional<std::string> evidenceOf(ValueRule& valueRule, const Value& value,
                                          const Numbers& numbers) const;

    const std::vector<Rule>& rules;
    std::vector<ValueRule> valueRules;
    PatternSet nameSet;
};

}  // namespace Report
