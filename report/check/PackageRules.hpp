#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "FindingList.hpp"
#include "Package.hpp"
#include "PartPattern.hpp"
#include "Rule.hpp"
#include "TextPattern.hpp"

namespace Report {

/// The rules on states, verdicts and facts.
class PackageRules {
public:
    /// The rules must outlive this object.
    explicit PackageRules(const std::vector<Rule>& allRules);

    /// `isNested`: the package is inside another one, and can have no sidecar.
    void apply(const Package& package, bool isNested, FindingList& findings) const;

private:
    struct PackageRule {
        std::size_t index = 0;
        PartPattern where;
        std::optional<TextPattern> cause;
    };

    void applyToPart(const PackageRule& rule, const Part& part, FindingList& findings) const;

    const std::vector<Rule>& rules;
    std::vector<PackageRule> packageRules;
};

}  // namespace Report
