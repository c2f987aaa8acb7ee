#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "CheckText.hpp"
#include "Names.hpp"
#include "SafeText.hpp"
#include "ShowSections.hpp"
#include "Words.hpp"

namespace Report {
namespace {

constexpr std::size_t severityWidth = 9;  // columns of "warning" and a gap
constexpr std::size_t margin = TextWriter::indent + severityWidth;
constexpr std::size_t mostFindings = 20;  // of one rule
constexpr std::array severityInks{Ink::bad, Ink::warning, Ink::plain};

/// Findings of one rule, which mean the same.
using Group = std::vector<const Finding*>;

/// The findings in the parts that are shown, in the order of the first of each group.
std::vector<Group> groupsOf(const ShowContext& show, const Package& package) {
    using Key = std::tuple<Severity, std::string_view, std::string_view, std::string_view>;
    std::vector<Group> groups;
    std::map<Key, std::size_t> known;
    for (const Finding& finding : package.findings) {
        if (show.selectsPart(finding.part)) {
            const auto [row, added] = known.emplace(
                Key(finding.severity, finding.rule, finding.meaning, finding.advice), groups.size());
            groups.resize(groups.size() + (added ? 1 : 0));
            groups[row->second].push_back(&finding);
        }
    }
    return groups;
}

/// The evidence, after the number of lines if it is only a part of them.
void writePlace(const ShowContext& show, const Finding& finding) {
    if (finding.count > 1 && finding.count > finding.evidence.size()) {
        const std::string place = finding.part.empty() ? "" : forTerminal(show.prefix + finding.part) + ": ";
        show.text.paragraph(place + counted(finding.count, "time") + ", " +
                                std::to_string(finding.evidence.size()) + " shown",
                            margin);
    }
    writeEvidence(show.text, finding.evidence, margin);
}

void writeGroup(const ShowContext& show, const Group& group) {
    const Finding& first = *group.front();
    const Ink ink = severityInks.at(static_cast<std::size_t>(first.severity));
    show.text.labelled(nameOf(first.severity), forTerminal(first.rule), severityWidth, TextWriter::indent,
                       ink);
    show.text.paragraph(forTerminal(first.meaning), margin);
    if (!first.advice.empty()) {
        show.text.paragraph("To do: " + forTerminal(first.advice), margin);
    }
    show.text.rows(group, mostFindings, [&](const Finding* finding) { writePlace(show, *finding); });
}

}  // namespace

void writeFindings(const ShowContext& show, const Package& package) {
    const std::vector<Group> groups = groupsOf(show, package);
    if (groups.empty()) {
        return;
    }
    show.text.heading("Findings");
    for (const Group& group : groups) {
        writeGroup(show, group);
    }
}

}  // namespace Report
