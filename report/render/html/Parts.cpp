#include <algorithm>

#include "Evidence.hpp"
#include "Names.hpp"
#include "PartGroups.hpp"
#include "Phrases.hpp"
#include "Prose.hpp"
#include "Sections.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t longestPartName = 300;

Fields partRow(const View& view, std::size_t index) {
    const Part& part = view->parts[index];
    constexpr std::size_t longestCause = 500;
    Fields row;
    row.set("name", shortened(part.name, longestPartName))
        .set("target", hasText(part) ? textId(view, index) : std::string{})
        .set("state", nameOf(part.state))
        .set("tone", toneOf(part.state))
        .set("certainty", part.certainty ? nameOf(*part.certainty) : std::string_view{})
        .set("size", part.member.empty() ? std::string{} : grouped(part.size))
        .set("time", timeText(part.time));
    setProse(row, "cause", part.cause, longestCause);
    setEvidence(row, part.evidence);
    return row;
}

/// The rows of the table, in four groups, each in the order of the names.
struct PartTable {
    std::vector<std::size_t> troubled;  ///< expected, and not present
    std::vector<std::size_t> present;   ///< expected
    std::vector<std::size_t> notRead;   ///< expected
    std::vector<std::size_t> others;    ///< not expected; those that are not present first
};

PartTable sortedParts(const Package& package) {
    PartTable table;
    for (const std::size_t index : partsByName(package)) {
        const Part& part = package.parts[index];
        if (!part.expected) {
            table.others.push_back(index);
        } else if (part.state == State::present) {
            table.present.push_back(index);
        } else if (part.state == State::notRead) {
            table.notRead.push_back(index);
        } else {
            table.troubled.push_back(index);
        }
    }
    std::stable_partition(table.others.begin(), table.others.end(),
                          [&](std::size_t index) { return package.parts[index].state != State::present; });
    return table;
}

}  // namespace

void writeParts(std::ostream& out, const View& view) {
    const PartTable table = sortedParts(*view.package);
    Rows groups;
    std::size_t left = view.allowance.parts;
    const auto addGroup = [&](const char* title, const std::vector<std::size_t>& parts) {
        Rows rows;
        for (const std::size_t index : parts) {
            if (left == 0) {
                break;
            }
            --left;
            rows.push_back(partRow(view, index));
        }
        if (!rows.empty()) {
            groups.push_back(Fields{}
                                 .set("title", title)
                                 .set("count", grouped(parts.size()))
                                 .set("rows", std::move(rows)));
        }
    };
    addGroup("Expected, and not as they should be", table.troubled);
    addGroup("Expected, and not read because of a limit", table.notRead);
    addGroup("Expected and present", table.present);
    addGroup("Not expected: these do not count", table.others);
    const std::size_t written = view.allowance.parts - left;
    const std::size_t expected = countExpected(*view.package);
    fill(out, "parts",
         Fields{}
             .set("id", view.id)
             .set("label", view.label)
             .set("level", levelText(view.level))
             .set("summary", grouped(table.present.size()) + " of " +
                                 counted(expected, "expected part is", "expected parts are") + " present.")
             .set("groups", std::move(groups))
             .set("leftOut", leftOutNote(view->parts.size() - written, "part")));
}

}  // namespace Report::Html
