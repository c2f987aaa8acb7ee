#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <vector>

#include "HistoryRenderers.hpp"
#include "HistoryWords.hpp"
#include "SafeText.hpp"
#include "TextWriter.hpp"
#include "Words.hpp"

namespace Report {

namespace {

constexpr std::size_t gap = 2;           // columns
constexpr std::size_t widestFirst = 32;  // of the first column
constexpr std::size_t longestCourse = 24;

/// A row of a table, below the name of its value. The first cell is at the left.
struct Row {
    std::string above;
    std::vector<std::string> cells;
};

class Table {
public:
    explicit Table(std::vector<std::string> titles) : heading{"", std::move(titles)} { widen(heading); }

    void add(Row row) {
        widen(row);
        rows.push_back(std::move(row));
    }

    void write(TextWriter& text) const {
        text.line(text.inked(Ink::bold, lineOf(heading)));
        const std::string* above = nullptr;
        for (const Row& row : rows) {
            if (above == nullptr || *above != row.above) {
                text.line("  " + row.above);
                above = &row.above;
            }
            text.line(lineOf(row));
        }
    }

private:
    void widen(const Row& row) {
        widths.resize(row.cells.size());
        for (std::size_t column = 0; column < row.cells.size(); ++column) {
            const std::size_t width = columnsOf(row.cells[column]);
            widths[column] = std::max(widths[column], column == 0 ? std::min(width, widestFirst) : width);
        }
    }

    std::string lineOf(const Row& row) const {
        std::string line = "    " + row.cells.front() + padding(widths.front(), row.cells.front());
        for (std::size_t column = 1; column < row.cells.size(); ++column) {
            line.append(gap, ' ')
                .append(padding(widths[column], row.cells[column]))
                .append(row.cells[column]);
        }
        return line;
    }

    Row heading;
    std::vector<Row> rows;
    std::vector<std::size_t> widths;
};

void writeHead(TextWriter& text, const HistoryHead& head, const std::string* board,
               const std::string& conclusion) {
    text.line(text.inked(Ink::bold, forTerminal(head.store + ": " + scopeText(head.summary, board))));
    if (head.summary.packages > 0) {
        text.labelled("Time", periodText(head.summary), 10, TextWriter::indent);
        text.labelled("Verdicts", verdictsText(head.summary), 10, TextWriter::indent);
    }
    if (const std::string leftOut = leftOutText(head.summary); !leftOut.empty()) {
        text.paragraph(leftOut);
    }
    text.line();
    text.paragraph(conclusion);
}

void writeRest(TextWriter& text, std::size_t leftOut) {
    if (leftOut > 0) {
        text.line("  and " + grouped(leftOut) + " more; --limit 0 prints all");
    }
}

std::string courseText(const Course& course) {
    return sparkline(course.points, longestCourse);
}

}  // namespace

void renderTrend(std::ostream& out, const HistoryHead& head, const FleetTrend& trend,
                 const TextStyle& style) {
    TextWriter text(out, style);
    writeHead(text, head, nullptr, conclusionText(trend, head.summary));
    if (trend.outliers.empty()) {
        return;
    }
    Table table({"board", "score", "now", "usual", "per hour", "usual", "course"});
    for (const Outlier& outlier : trend.outliers) {
        const Course& course = outlier.course;
        table.add({forTerminal(nameText(course.name)),
                   {forTerminal(course.board), scoreText(outlier.score()),
                    numberText(course.points.back().number), numberText(outlier.levels.median),
                    hourlyText(course.perHour), hourlyText(outlier.rates.median), courseText(course)}});
    }
    text.line();
    table.write(text);
    writeRest(text, trend.leftOut);
}

void renderTrend(std::ostream& out, const HistoryHead& head, const std::string& board,
                 const BoardTrend& trend, const TextStyle& style) {
    TextWriter text(out, style);
    writeHead(text, head, &board, conclusionText(trend));
    if (trend.changed.empty()) {
        return;
    }
    Table table({"value", "first", "now", "per hour", "course"});
    for (const Course& course : trend.changed) {
        const std::string which =
            course.name.occurrence > 1 ? " (" + std::to_string(course.name.occurrence) + ")" : "";
        const std::string title = course.name.title.empty() ? "" : ": " + course.name.title;
        table.add(
            {forTerminal(course.name.part + title),
             {forTerminal(course.name.name + which), numberText(course.points.front().number),
              numberText(course.points.back().number), hourlyText(course.perHour), courseText(course)}});
    }
    text.line();
    table.write(text);
    writeRest(text, trend.leftOut);
}

}  // namespace Report
