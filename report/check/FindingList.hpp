#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Package.hpp"
#include "Rule.hpp"

namespace Report {

/// Collects the findings of a package: one for each rule and part, with a count and the first few pieces of
/// evidence.
class FindingList {
public:
    /// The rules must outlive the list.
    explicit FindingList(const std::vector<Rule>& allRules) : rules(allRules), places(allRules.size()) {}

    /// Counts something that a rule found in a part, or in the package if `part` is empty. `source` and
    /// `text` are the evidence.
    void add(std::size_t rule, std::string_view part, std::string_view source, std::string_view text);

    /// More evidence for what was added last.
    void support(const Evidence& evidence);

    /// The findings by severity, then in the order in which they were added first.
    std::vector<Finding> take();

private:
    const std::vector<Rule>& rules;
    std::vector<std::map<std::string, std::size_t, std::less<>>> places;  // in the findings, by rule and part
    std::vector<Finding> findings;
    std::size_t last = 0;  // the finding that was added to
};

}  // namespace Report
