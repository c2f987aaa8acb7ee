#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "EntryText.hpp"
#include "Names.hpp"
#include "Renderers.hpp"
#include "SafeText.hpp"
#include "TextWriter.hpp"
#include "TimeText.hpp"
#include "Words.hpp"

namespace Report {
namespace {

constexpr std::size_t gap = 2;  // columns
constexpr std::size_t widestName = 44;
constexpr std::size_t widestNumber = 24;
constexpr std::size_t longestLine = 200;  // columns of a line of a text, or of a number

std::string joined(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string text;
    for (const std::string& piece : pieces) {
        text.append(text.empty() ? "" : separator).append(piece);
    }
    return text;
}

std::string durationText(double seconds) {
    constexpr std::array<std::pair<long long, std::string_view>, 3> units{
        {{86400, "d"}, {3600, "h"}, {60, "min"}}};
    auto tenths = std::llround(std::abs(seconds) * 10);
    std::vector<std::string> pieces;
    for (const auto& [length, unit] : units) {
        if (const long long count = tenths / (length * 10); count > 0) {
            pieces.push_back(std::to_string(count).append(" ").append(unit));
            tenths %= length * 10;
        }
    }
    if (tenths > 0 || pieces.empty()) {
        const std::string fraction = tenths % 10 != 0 ? "." + std::to_string(tenths % 10) : "";
        pieces.push_back(std::to_string(tenths / 10) + fraction + " s");
    }
    return joined(pieces, " ");
}

/// The name, board, time and verdict of a package.
void writeSide(TextWriter& text, std::string_view label, const Package& package) {
    constexpr std::size_t labelWidth = 8;
    std::vector<std::string> facts;
    facts.push_back(package.board ? forTerminal(*package.board) : "unknown board");
    facts.push_back(!package.time        ? "unknown time"
                    : package.clockUnset ? secondsText(*package.time) + " (clock not set)"
                                         : secondsText(*package.time));
    facts.emplace_back(nameOf(package.verdict));
    text.labelled(label, forTerminal(package.source) + ": " + joined(facts, ", "), labelWidth);
}

/// How far apart the packages are, or why there are no rates.
std::string distanceText(const Difference& difference) {
    const Package& before = *difference.before;
    const Package& after = *difference.after;
    if (difference.seconds) {
        return "The second package is " + durationText(*difference.seconds) +
               (*difference.seconds < 0 ? " older" : " newer") + " than the first.";
    }
    const bool sameTime = before.time && before.time == after.time;
    return std::string(sameTime ? "Both packages have the same time" : "The time between them is unknown") +
           ", so there are no rates.";
}

void writeRemarks(TextWriter& text, const Difference& difference) {
    const std::optional<std::string>& before = difference.before->board;
    const std::optional<std::string>& after = difference.after->board;
    if (before && after && *before != *after) {
        text.paragraph("The names of the boards differ.");
    }
    text.paragraph(distanceText(difference));
}

/// Lines that only one package has, with a sign.
void writeLines(TextWriter& text, std::string_view sign, std::size_t count,
                std::span<const std::string> first) {
    for (const std::string& line : first) {
        text.line(
            std::string("      ").append(sign).append(" ").append(cutTo(longestLine, forTerminal(line))));
    }
    if (count > first.size()) {
        text.line(std::string("      ").append(sign).append(" and ") +
                  counted(count - first.size(), "more line"));
    }
}

std::string stateOf(const Part* part) {
    return part == nullptr ? "not there" : std::string(nameOf(part->state));
}

std::string textCounts(const TextChange& change) {
    std::vector<std::string> counts;
    if (change.added > 0) {
        counts.push_back(counted(change.added, "new line"));
    }
    if (change.removed > 0) {
        counts.push_back(counted(change.removed, "line") + " gone");
    }
    return joined(counts, ", ");
}

std::string detailOf(const PartChange& change) {
    using What = PartChange::What;
    if (change.what == What::text) {
        return textCounts(change.text);
    }
    std::string detail = stateOf(change.before) + " -> " + stateOf(change.after);
    if (change.after != nullptr && !change.after->cause.empty()) {
        detail += ": " + forTerminal(change.after->cause);
    }
    return detail;
}

void writeParts(TextWriter& text, const std::vector<PartChange>& parts) {
    constexpr std::array<std::string_view, 4> words{"came", "went", "state", "text"};
    constexpr std::size_t nameColumn = 7;
    std::size_t nameWidth = 0;
    for (const PartChange& change : parts) {
        nameWidth = std::max(nameWidth, columnsOf(forTerminal(change.name)));
    }
    nameWidth = std::min(nameWidth, widestName) + gap;
    text.heading("Parts");
    for (const PartChange& change : parts) {
        const std::string_view word = words.at(static_cast<std::size_t>(change.what));
        const std::string name = std::string(word) + padding(nameColumn, word) + forTerminal(change.name);
        text.labelled(name, detailOf(change), nameColumn + nameWidth, TextWriter::indent);
        writeLines(text, "-", change.text.removed, change.text.firstRemoved);
        writeLines(text, "+", change.text.added, change.text.firstAdded);
    }
}

/// The cells of a row of values: name, before, after, difference, rate.
using Row = std::array<std::string, 5>;

Row rowOf(const ValueChange& change) {
    const auto number = [](const Value* value) {
        return value == nullptr ? "-" : cutTo(longestLine, forTerminal(value->text));
    };
    const Value& value = change.either();
    const std::string which = value.occurrence > 1 ? " (" + std::to_string(value.occurrence) + ")" : "";
    std::string difference = cutTo(longestLine, change.difference);
    if (difference.empty()) {
        difference = change.before == nullptr ? "new" : change.after == nullptr ? "gone" : "differs";
    }
    return {forTerminal(value.name) + which, number(change.before), number(change.after),
            std::move(difference), change.perSecond ? rateText(*change.perSecond) : ""};
}

/// A table of the values that differ, with a line for each part and title.
class ChangeTable {
public:
    ChangeTable(const std::vector<ValueChange>& valueChanges, bool hasRates)
        : changes(valueChanges), heading{"", "before", "after", "difference", hasRates ? "per second" : ""} {
        widen(heading);
        for (const ValueChange& change : changes) {
            widen(rowOf(change));
        }
        for (std::size_t column = 0; column < widths.size(); ++column) {
            widths.at(column) = std::min(widths.at(column), column == 0 ? widestName : widestNumber);
        }
    }

    void write(TextWriter& text) const {
        text.heading("Values");
        text.line(lineOf(heading));
        std::string above;
        for (const ValueChange& change : changes) {
            const Value& value = change.either();
            const std::string title =
                forTerminal(value.part) + (value.title.empty() ? "" : ": " + forTerminal(value.title));
            if (title != above) {
                text.line("  " + title);
                above = title;
            }
            const std::string line = lineOf(rowOf(change));
            text.line(change.fell ? line + "  " + text.inked(Ink::warning, "fell") : line);
        }
    }

private:
    void widen(const Row& row) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths.at(column) = std::max(widths.at(column), columnsOf(row.at(column)));
        }
    }

    std::string lineOf(const Row& row) const {
        std::string line = "    " + row[0] + padding(widths[0], row[0]);
        for (std::size_t column = 1; column < row.size(); ++column) {
            line.append(gap, ' ').append(padding(widths.at(column), row.at(column))).append(row.at(column));
        }
        return line.substr(0, line.find_last_not_of(' ') + 1);
    }

    const std::vector<ValueChange>& changes;
    Row heading;
    std::array<std::size_t, std::tuple_size_v<Row>> widths{};
};

void writeLogs(TextWriter& text, const Difference& difference) {
    for (const LogChange& log : difference.logs) {
        const std::string gone = log.gone > 0 ? ", " + counted(log.gone, "entry", "entries") + " gone" : "";
        text.heading(forTerminal(log.log) + ": " + counted(log.count, "new entry", "new entries") + gone +
                     " (times in UTC)");
        for (const NewEntries& entries : log.parts) {
            if (entries.part->name != log.log) {
                text.line("  " + forTerminal(entries.part->name));
            }
            forEachNewEntry(*difference.after, entries, difference.maxLine, [&](const LogEntry& entry) {
                writeEntry(text, entry, TextWriter::indent);
                return true;
            });
        }
    }
}

void writeNotCompared(TextWriter& text, const Difference& difference) {
    text.heading("Not compared");
    text.paragraph("One of the packages was not read to its end, so that these parts can be there or longer.",
                   TextWriter::indent);
    for (const std::string& name : difference.notCompared) {
        text.line("  " + forTerminal(name));
    }
}

void writeDifference(TextWriter& text, const Difference& difference) {
    if (!difference.parts.empty()) {
        writeParts(text, difference.parts);
    }
    if (!difference.values.empty()) {
        ChangeTable(difference.values, difference.seconds.has_value()).write(text);
    }
    writeLogs(text, difference);
    if (!difference.notCompared.empty()) {
        writeNotCompared(text, difference);
    }
}

/// Whether a part of one of these packages was compared.
bool comparesParts(const Difference& difference) {
    const auto isCompared = [&](const Part& part) {
        return !part.member.empty() && std::ranges::count(difference.notCompared, part.name) == 0;
    };
    return std::ranges::any_of(difference.before->parts, isCompared) ||
           std::ranges::any_of(difference.after->parts, isCompared);
}

std::string_view textWithoutDifferences(const Difference& difference) {
    if (exitStatusOf(difference) == 0) {
        return "They do not differ.";
    }
    const bool any = comparesParts(difference) || std::ranges::any_of(difference.nested, comparesParts);
    return any ? "Nothing that was compared differs." : "Nothing could be compared.";
}

void writeHead(TextWriter& text, const Difference& difference) {
    writeSide(text, "before", *difference.before);
    writeSide(text, "after", *difference.after);
    writeRemarks(text, difference);
}

}  // namespace

void renderDifference(std::ostream& out, const Difference& difference, const TextStyle& style) {
    TextWriter text(out, style);
    writeHead(text, difference);
    if (difference.empty()) {
        text.line(textWithoutDifferences(difference));
    }
    writeDifference(text, difference);
    for (const Difference& nested : difference.nested) {
        text.heading("Nested package " + forTerminal(nested.name));
        writeHead(text, nested);
        writeDifference(text, nested);
    }
}

}  // namespace Report
