#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "FindingList.hpp"
#include "Package.hpp"
#include "PackageNumbers.hpp"
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
    struct Naming {
        const Rule* rule = nullptr;
        std::size_t index = 0;            // in all rules
        std::vector<std::string> totals;  // "NAME + NAME": of what the value is a share
    };

    /// The rules that name a value. Valid until the next call.
    const std::vector<Naming>& namingsOf(const Value& value);
    std::vector<Naming> findNamings(const Value& value);
    /// The value as evidence, or no value if the rule does not find it.
    static std::optional<std::string> evidenceOf(const Naming& naming, const Value& value,
                                                 PackageNumbers& numbers);

    const std::vector<Rule>& rules;
    std::vector<ValueRule> valueRules;
    PatternSet nameSet;
    // Packages have the same values again and again.
    std::unordered_map<std::string, std::vector<Naming>> namings;  // by part and name
    std::size_t namingsSize = 0;                                   // bytes of the keys
};

}  // namespace Report
