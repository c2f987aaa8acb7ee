#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "SafeText.hpp"
#include "ShowSections.hpp"
#include "ValueTables.hpp"
#include "Words.hpp"

namespace Report {
namespace {

constexpr std::size_t widestName = 44;  // columns; longer names move their numbers to the right
constexpr std::size_t narrowestNumber = 12;
constexpr std::size_t widestNumber = 24;
constexpr std::size_t gap = 2;

std::string nameOf(const ValueRow& row) {
    const std::string which = row.occurrence > 1 ? " (" + std::to_string(row.occurrence) + ")" : "";
    return (row.named ? "* " : "  ") + forTerminal(row.name) + which;
}

std::string cellOf(const Value* value) {
    return value == nullptr ? "-" : forTerminal(value->text);
}

std::string headingOf(const ShowContext& show, const ValueTable& table) {
    const std::string_view title = titleOf(table);
    return forTerminal(show.prefix + table.part) + (title.empty() ? "" : ": " + forTerminal(title));
}

/// Widths of the columns, the same for all tables.
struct Widths {
    std::size_t name = 0;
    std::size_t number = narrowestNumber;
};

Widths widthsOf(const ShowContext& show, const std::vector<ValueTable>& tables) {
    Widths widths;
    for (const ValueTable& table : tables) {
        widths.name = std::max(widths.name, columnsOf(headingOf(show, table)));
        for (const ValueRow& row : table.rows) {
            widths.name = std::max(widths.name, columnsOf(nameOf(row)));
            for (const Value* const value : row.cells) {
                widths.number = std::max(widths.number, columnsOf(cellOf(value)));
            }
        }
    }
    return {std::min(widths.name, widestName), std::min(widths.number, widestNumber)};
}

void writeRow(TextWriter& text, Ink ink, const std::string& name, const std::vector<std::string>& cells,
              Widths widths) {
    std::string line = text.inked(ink, name) + padding(widths.name, name);
    for (const std::string& cell : cells) {
        line.append(gap, ' ').append(padding(widths.number, cell)).append(cell);
    }
    text.line(line);
}

void writeTable(const ShowContext& show, const ValueTable& table, Widths widths) {
    const std::vector<std::size_t> columns = columnsOf(table);
    std::vector<std::string> titles;
    titles.reserve(columns.size());
    for (const std::size_t column : columns) {
        const std::string_view dispatcher = dispatcherOf(table, column);
        titles.emplace_back(dispatcher.empty() ? "value" : dispatcher);
    }
    show.text.line();
    writeRow(show.text, Ink::bold, headingOf(show, table), titles, widths);
    for (const ValueRow& row : table.rows) {
        std::vector<std::string> cells;
        cells.reserve(columns.size());
        for (const std::size_t column : columns) {
            cells.push_back(cellOf(row.cells.at(column)));
        }
        writeRow(show.text, row.named ? Ink::bold : Ink::plain, nameOf(row), cells, widths);
    }
}

}  // namespace

void writeValues(const ShowContext& show, const Package& package) {
    const auto tables = valueTables(
        package, [&](const Value& value) { return show.rules.names(value); },
        [&](std::string_view part) { return show.selectsPart(std::string(part)); });
    if (tables.empty()) {
        return;
    }
    show.text.heading("Values");
    show.text.line("  * marks values that a rule names: they come first. Other zeros come last.");
    const Widths widths = widthsOf(show, tables);
    for (const ValueTable& table : tables) {
        writeTable(show, table, widths);
    }
    for (const Part& part : package.parts) {
        if (part.moreValues > 0 && show.selectsPart(part.name)) {
            show.text.paragraph(forTerminal(show.prefix + part.name) + ": " +
                                    counted(part.moreValues, "more value") + " not kept",
                                TextWriter::indent);
        }
    }
}

}  // namespace Report
