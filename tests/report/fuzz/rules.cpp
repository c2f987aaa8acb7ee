// Rule files, and rules on what packages hold. The section `rules` is a rule file.

#include <memory>
#include <string>
#include <vector>

#include "FindingList.hpp"
#include "FuzzPackage.hpp"
#include "FuzzTarget.hpp"
#include "Judge.hpp"
#include "LineRules.hpp"
#include "PackageRules.hpp"
#include "RuleSet.hpp"
#include "SmallLimits.hpp"
#include "ValueRules.hpp"

namespace {

using Fuzz::require;

/// What a file of rules says; nothing if it is wrong.
Report::RuleFile rulesOf(const std::string& file) {
    try {
        return Report::parseRules(file, "fuzz");
    } catch (const Report::RuleError& error) {
        require(std::string_view(error.what()).starts_with("fuzz:"), "an error names the file");
        return {};
    }
}

std::shared_ptr<const Report::LogForms> formsOf(const Report::RuleFile& rules) {
    auto forms = std::make_shared<Report::LogForms>();
    for (const Report::FormRule& form : rules.forms) {
        forms->add(form.pattern, form.levels);
    }
    return forms;
}

/// As RuleSet::apply() finds them. A RuleSet has the shipped rules, too, which take much longer than one
/// input may.
std::vector<Report::Finding> findingsOf(const std::vector<Report::Rule>& rules,
                                        const Report::Package& package) {
    Report::FindingList findings(rules);
    Report::PackageRules(rules).apply(package, false, findings);
    Report::ValueRules(rules).apply(package, findings);
    Report::LineRules(rules).apply(package, ReportFuzz::smallLimits().maxLine, findings);
    return findings.take();
}

void checkFindings(const std::vector<Report::Finding>& findings) {
    for (std::size_t index = 0; index < findings.size(); ++index) {
        const Report::Finding& finding = findings[index];
        require(!finding.rule.empty() && !finding.meaning.empty(), "a finding has a rule and a meaning");
        require(finding.count > 0, "a finding was found");
        require(index == 0 || findings[index - 1].severity <= finding.severity,
                "the worst findings come first");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ReportFuzz::FuzzPackage description(Fuzz::textOf(data, size), {"rules"});
    const Report::RuleFile file = rulesOf(description.find("rules").value_or(""));
    if (!file.rules.empty()) {
        Report::Package package = description.load(Report::Keep::all, formsOf(file));
        judge(package, {});
        checkFindings(findingsOf(file.rules, package));
    }
    return 0;
}
