#pragma once

#include <cstddef>
#include <vector>

#include "FindingList.hpp"
#include "LineRules.hpp"
#include "Package.hpp"
#include "PackageRules.hpp"
#include "Rule.hpp"
#include "ValueRules.hpp"

namespace Report {

/// Rules with compiled patterns, which takes longer than to apply them to a small package.
class CompiledRules {
public:
    /// The rules must outlive this object.
    explicit CompiledRules(const std::vector<Rule>& allRules)
        : rules(allRules), packageRules(allRules), valueRules(allRules), lineRules(allRules) {}

    /// Sets the findings of a judged package and of those inside it. Reads lines up to `maxLine` bytes.
    void apply(Package& package, bool isNested, std::size_t maxLine) {
        FindingList findings(rules);
        packageRules.apply(package, isNested, findings);
        valueRules.apply(package, findings);
        lineRules.apply(package, maxLine, findings);
        package.findings = findings.take();
        for (Package& nested : package.nested) {
            apply(nested, true, maxLine);
        }
    }

    /// Whether a rule names this value, whatever its number is.
    bool names(const Value& value) { return valueRules.names(value); }

private:
    const std::vector<Rule>& rules;
    PackageRules packageRules;
    ValueRules valueRules;
    LineRules lineRules;
};

}  // namespace Report
