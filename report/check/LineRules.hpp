#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "EntryParser.hpp"
#include "FindingList.hpp"
#include "Package.hpp"
#include "PartPattern.hpp"
#include "PatternSet.hpp"
#include "Rule.hpp"

namespace Report {

/// The rules on lines: of logs and other texts, and of the standard error in a sidecar.
class LineRules {
public:
    /// The rules must outlive this object.
    explicit LineRules(const std::vector<Rule>& allRules);
    LineRules(const LineRules&) = delete;
    LineRules& operator=(const LineRules&) = delete;
    LineRules(LineRules&&) = delete;
    LineRules& operator=(LineRules&&) = delete;
    ~LineRules();

    /// Reads the lines up to `maxLine` bytes. Parts whose text was not kept are left out.
    void apply(const Package& package, std::size_t maxLine, FindingList& findings);

private:
    struct LineRule;
    class LineSearch;

    std::vector<LineRule*> rulesFor(const Part& part) const;
    LineSearch& searchFor(const std::vector<LineRule*>& wanted);
    void applyToText(const Part& part, const EntryParser& parser, std::size_t maxLine, FindingList& findings);
    void applyToSidecar(const Sidecar& sidecar, FindingList& findings);

    const std::vector<Rule>& rules;
    std::vector<std::unique_ptr<LineRule>> lineRules;
    std::map<std::vector<LineRule*>, std::unique_ptr<LineSearch>> searches;  // of each combination
};

}  // namespace Report
