#include "Differences.hpp"

#include <algorithm>
#include <chrono>
#include <ostream>
#include <string>

#include "Difference.hpp"
#include "Names.hpp"
#include "Phrases.hpp"
#include "Template.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t mostOfAKind = 300;  // rows of a list or table of one difference
constexpr std::size_t longestName = 200;

/// The first rows of a list, by `rowOf`.
template <typename List, typename RowOf>
Rows firstRows(const List& list, const RowOf& rowOf) {
    Rows rows;
    for (const auto& element : list) {
        if (rows.size() == mostOfAKind) {
            break;
        }
        rows.push_back(rowOf(element));
    }
    return rows;
}

std::string stateBeforeAndAfter(const PartChange& change) {
    const auto stateIn = [](const Part* part) {
        return part == nullptr ? std::string{"not there"} : std::string{nameOf(part->state)};
    };
    return stateIn(change.before) + " before, " + stateIn(change.after) + " after";
}

Fields partChangeRow(const PartChange& change) {
    Fields row;
    row.set("name", shortened(change.name, longestName));
    switch (change.what) {
        case PartChange::What::came:
            return row.set("what", "came");
        case PartChange::What::went:
            return row.set("what", "went");
        case PartChange::What::state:
            return row.set("what", stateBeforeAndAfter(change));
        case PartChange::What::text:
            break;
    }
    return row.set("what", counted(change.text.added, "line") + " more, " +
                               counted(change.text.removed, "line") + " less");
}

std::string remarkOf(const ValueChange& change) {
    if (change.before == nullptr) {
        return "new";
    }
    if (change.after == nullptr) {
        return "gone";
    }
    return change.fell ? "fell" : "";
}

Fields valueChangeRow(const ValueChange& change) {
    const auto textIn = [](const Value* value) {
        return value == nullptr ? std::string{} : shortened(value->text, longestName);
    };
    return Fields{}
        .set("part", shortened(change.either().part, longestName))
        .set("valueName", shortened(change.either().name, longestName))
        .set("before", textIn(change.before))
        .set("after", textIn(change.after))
        .set("difference", shortened(change.difference, longestName))
        .set("rate", change.perSecond ? rateText(*change.perSecond) : "")
        .set("remark", remarkOf(change));
}

Fields logChangeRow(const LogChange& change) {
    return Fields{}
        .set("log", shortened(change.log, longestName))
        .set("entries", counted(change.count, "new entry", "new entries"));
}

Fields blockOf(const Difference& difference, const std::string& name) {
    Rows parts = firstRows(difference.parts, partChangeRow);
    Rows values = firstRows(difference.values, valueChangeRow);
    Rows logs = firstRows(difference.logs, logChangeRow);
    Rows skipped = firstRows(difference.notCompared, [](const std::string& part) {
        return Fields{}.set("skippedName", shortened(part, longestName));
    });
    const std::size_t all = difference.parts.size() + difference.values.size() + difference.logs.size() +
                            difference.notCompared.size();
    const std::size_t shown = parts.size() + values.size() + logs.size() + skipped.size();
    return Fields{}
        .set("name", shortened(name, longestName))
        .set("same", difference.empty())
        .setList("parts", std::move(parts))
        .setList("values", std::move(values))
        .setList("logs", std::move(logs))
        .setList("skipped", std::move(skipped))
        .set("leftOut", leftOutNote(all - shown, "difference"));
}

/// A block for the packages, and one for each pair of packages inside them.
void addBlocks(const Difference& difference, const std::string& name, Rows& blocks) {
    blocks.push_back(blockOf(difference, name));
    for (const Difference& nested : difference.nested) {
        const std::string inside = nested.after == nullptr ? "a nested package" : nested.after->source;
        addBlocks(nested, name.empty() ? inside : std::string(name).append(" / ").append(inside), blocks);
    }
}

std::string summaryOfDifference(const Difference& difference) {
    std::size_t entries = 0;
    for (const LogChange& log : difference.logs) {
        entries += log.count;
    }
    return counted(difference.values.size(), "value") + ", " + counted(difference.parts.size(), "part") +
           ", " + counted(entries, "new log entry", "new log entries");
}

std::string headingOfDifference(const View& before, const View& after) {
    return shortened(before.label, longestName) + " and " + shortened(after.label, longestName) + ", " +
           spanText(spanBetween(*before->time, *after->time)) + " apart";
}

}  // namespace

Neighbours neighboursOf(const std::vector<Trend>& trends) {
    Neighbours neighbours;
    for (const Trend& trend : trends) {
        for (std::size_t index = 1; index < trend.packages.size(); ++index) {
            neighbours.emplace_back(trend.packages[index - 1], trend.packages[index]);
        }
    }
    return neighbours;
}

void writeDifferences(std::ostream& out, const Neighbours& neighbours, std::size_t maxLine) {
    if (neighbours.empty()) {
        return;
    }
    out << "<section id=\"differences\">\n<h2>Differences between neighbours</h2>\n";
    for (const auto& [before, after] : neighbours) {
        const Difference difference = compare(*before->package, *after->package, maxLine);
        Rows blocks;
        addBlocks(difference, {}, blocks);
        fill(out, "difference",
             Fields{}
                 .set("open", neighbours.size() == 1)
                 .set("heading", headingOfDifference(*before, *after))
                 .set("summary", summaryOfDifference(difference))
                 .set("blocks", std::move(blocks)));
    }
    out << "</section>\n";
}

}  // namespace Report::Html
