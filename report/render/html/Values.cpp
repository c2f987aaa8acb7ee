#include <algorithm>
#include <functional>
#include <numeric>

#include "Phrases.hpp"
#include "Sections.hpp"
#include "ValueTables.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t longestValueText = 300;

Fields valueRow(const ValueTable& table, const ValueRow& row) {
    Rows cells;
    for (const std::size_t column : columnsOf(table)) {
        const Value* const value = row.cells.at(column);
        cells.push_back(
            Fields{}.set("text", value == nullptr ? "" : shortened(value->text, longestValueText)));
    }
    const std::string which = row.occurrence > 1 ? " (" + std::to_string(row.occurrence) + ")" : "";
    std::string kinds = row.named ? "watched" : "";
    kinds += row.zero ? (row.named ? " zero" : "zero") : "";
    return Fields{}
        .set("name", shortened(row.name, longestValueText) + which)
        .set("cells", std::move(cells))
        .set("kinds", std::move(kinds));
}

Fields tableOf(const ValueTable& table, std::size_t& left) {
    Rows columns;
    for (const std::size_t column : columnsOf(table)) {
        columns.push_back(Fields{}.set(
            "heading", dispatcherOf(table, column).empty() ? "Value" : dispatcherOf(table, column)));
    }
    Rows rows;
    for (const ValueRow& row : table.rows) {
        if (left == 0) {
            break;
        }
        --left;
        rows.push_back(valueRow(table, row));
    }
    return Fields{}
        .set("part", shortened(table.part, longestValueText))
        .set("title", shortened(titleOf(table), longestValueText))
        .set("columns", std::move(columns))
        .set("rows", std::move(rows));
}

}  // namespace

void writeValues(std::ostream& out, const View& view, const RuleSet& rules) {
    if (view->values.empty()) {
        return;
    }
    const std::vector<ValueTable> tables = tablesOf(view, rules);
    Rows groups;
    std::size_t rows = 0;
    std::size_t left = view.allowance.values;
    bool anyNamed = false;
    for (const ValueTable& table : tables) {
        rows += table.rows.size();
        anyNamed = anyNamed || std::ranges::any_of(table.rows, &ValueRow::named);
        if (left > 0) {
            groups.push_back(tableOf(table, left));
        }
    }
    const std::size_t notKept =
        std::transform_reduce(view->parts.begin(), view->parts.end(), std::size_t{0}, std::plus{},
                              [](const Part& part) { return part.moreValues; });
    fill(out, "values",
         Fields{}
             .set("id", view.id)
             .set("level", levelText(view.level))
             .set("anyWatched", anyNamed)
             .set("groups", std::move(groups))
             .set("leftOut", leftOutNote(rows - (view.allowance.values - left) + notKept, "value")));
}

}  // namespace Report::Html
