#include <algorithm>
#include <array>
#include <map>

#include "Evidence.hpp"
#include "Names.hpp"
#include "Phrases.hpp"
#include "Prose.hpp"
#include "Sections.hpp"

namespace Report::Html {
namespace {

/// "4 times, 3 shown, ", or nothing for a finding with a single line or value.
std::string timesOf(const Finding& finding) {
    if (finding.count <= 1) {
        return {};
    }
    const std::size_t shown = finding.evidence.size();
    return counted(finding.count, "time") + ", " +
           (shown < finding.count ? std::to_string(shown) + " shown, " : std::string{});
}

Fields findingRow(const View& view, const Finding& finding) {
    constexpr std::size_t longest = 1000;
    Fields row;
    setProse(row, "meaning", finding.meaning, longest);
    setProse(row, "advice", finding.advice, longest);
    row.set("part", shortened(finding.part, longest))
        .set("target", textIdOf(view, finding.part))
        .set("times", timesOf(finding))
        .set("rule", shortened(finding.rule, longest));
    setEvidence(row, finding.evidence, finding.part);
    return row;
}

}  // namespace

void writeFindings(std::ostream& out, const View& view) {
    std::map<Severity, Rows> bySeverity;
    std::map<Severity, std::size_t> counts;
    std::size_t written = 0;
    // The findings are sorted by severity, so the least severe are left out.
    for (const Finding& finding : view->findings) {
        ++counts[finding.severity];
        if (written < view.allowance.findings) {
            bySeverity[finding.severity].push_back(findingRow(view, finding));
            ++written;
        }
    }
    Rows groups;
    for (auto& [severity, rows] : bySeverity) {
        groups.push_back(Fields{}
                             .set("heading", counted(counts[severity], nameOf(severity)))
                             .set("tone", toneOf(severity))
                             .set("findings", std::move(rows)));
    }
    const bool none = groups.empty();
    fill(out, "findings",
         Fields{}
             .set("id", view.id)
             .set("level", levelText(view.level))
             .set("sublevel", levelText(view.level + 1))
             .set("none", none)
             .set("groups", std::move(groups))
             .set("leftOut", leftOutNote(view->findings.size() - written, "finding")));
}

}  // namespace Report::Html
