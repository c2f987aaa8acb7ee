#include "CheckText.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "FactsText.hpp"
#include "Names.hpp"
#include "PartGroups.hpp"
#include "PartList.hpp"
#include "Renderers.hpp"
#include "SafeText.hpp"
#include "TimeText.hpp"
#include "VerdictText.hpp"
#include "Words.hpp"

namespace Report {
namespace {

constexpr std::size_t stateWidth = 12;    // columns of "unreadable" and a gap
constexpr std::size_t widestFolder = 28;  // columns
constexpr std::size_t longestName = 100;  // columns

constexpr std::size_t longestEvidence = 200;

// Longer lists are cut, so that the text fits on a screen.
constexpr std::size_t mostRows = 10;
constexpr std::size_t mostNames = 16;
constexpr std::size_t mostLines = 5;

// In the order of the enumerations.
constexpr std::array verdictInks{Ink::good, Ink::warning, Ink::warning, Ink::bad, Ink::bad, Ink::bad};
constexpr std::array stateInks{Ink::good,    Ink::warning, Ink::bad,  Ink::bad,
                               Ink::warning, Ink::bad,     Ink::plain};
constexpr std::array<std::string_view, 3> causeLabels{"Cause: ", "Likely cause: ", "Possible cause: "};

template <typename Row, std::size_t size, typename Enumerator>
Row rowOf(const std::array<Row, size>& table, Enumerator enumerator) {
    return table.at(static_cast<std::size_t>(enumerator));
}

std::string listed(const std::vector<std::string>& names, std::string_view separator) {
    std::string list;
    const std::size_t shown = std::min(names.size(), mostNames);
    for (std::size_t index = 0; index < shown; ++index) {
        list.append(index == 0 ? "" : separator).append(shownName(names[index]));
    }
    if (shown < names.size()) {
        list.append(" and ").append(std::to_string(names.size() - shown)).append(" more");
    }
    return list;
}

void writeTroubles(TextWriter& text, const Package& package, bool expected) {
    const std::vector<PartGroup> groups = troubledParts(package, expected);
    if (groups.empty()) {
        return;
    }
    text.heading(expected ? "Not as it should be" : "Not as it should be, but not expected");
    text.rows(groups, mostRows, [&](const PartGroup& group) {
        text.labelled(nameOf(group.first->state), listed(group.names, ", "), stateWidth, TextWriter::indent,
                      rowOf(stateInks, group.first->state));
        writeCause(text, group.cause, group.first->certainty, TextWriter::indent + stateWidth);
        writeEvidence(text, group.first->evidence, TextWriter::indent + stateWidth);
    });
}

/// The name of the part that a member is, or else the name of the member.
std::string nameOfMember(const Package& package, const std::string& member) {
    const auto part = std::ranges::find(package.parts, member, &Part::member);
    return shownName(part == package.parts.end() ? member : part->name);
}

void writeUnread(TextWriter& text, const Package& package) {
    if (package.unread.empty()) {
        return;
    }
    text.heading("Not read, because of a limit");
    text.rows(package.unread, mostRows, [&](const Unread& unread) {
        const std::string what =
            unread.member.empty() ? "the rest of the package" : nameOfMember(package, unread.member);
        text.line("  " + what + ": " + std::string(optionOf(unread.limit)) + " raises the limit");
    });
}

std::string nameOf(const PartFolder& row) {
    return row.folder.empty() ? "." : shownName(row.folder);
}

/// Whether a part has evidence that an earlier run wrote it.
bool isDoubtful(const Part& part) {
    return part.state == State::present && !part.evidence.empty();
}

void writeNames(TextWriter& text, const Package& package, std::string_view title,
                const std::function<bool(const Part& part)>& isListed) {
    std::vector<std::string> names;
    for (const Part& part : package.parts) {
        if (part.state == State::present && isListed(part)) {
            names.push_back(part.name);
        }
    }
    if (names.empty()) {
        return;
    }
    const std::vector<PartFolder> folders = byFolder(names);
    std::size_t width = 0;
    for (const PartFolder& row : folders) {
        width = std::max(width, std::min(widestFolder, columnsOf(nameOf(row))));
    }
    text.heading(title);
    text.rows(folders, mostRows, [&](const PartFolder& row) {
        text.labelled(nameOf(row), listed(row.names, " "), width + TextWriter::indent, TextWriter::indent);
    });
}

void writeOverlaps(TextWriter& text, const Package& package) {
    struct Row {
        std::string part;
        Overlap overlap;
    };
    std::vector<Row> rows;
    for (const Part& part : package.parts) {
        for (const Overlap& overlap : part.overlaps) {
            rows.push_back({part.name, overlap});
        }
    }
    if (rows.empty()) {
        return;
    }
    const auto timeOf = [](const std::optional<LogEntry>& entry) {
        return entry && entry->time ? secondsText(*entry->time) : std::string("an unknown time");
    };
    text.heading("Entries that were overwritten before the archive read them");
    text.rows(rows, mostLines, [&](const Row& row) {
        text.paragraph(shownName(row.part) + ": between " + timeOf(row.overlap.before) + " and " +
                           timeOf(row.overlap.after),
                       TextWriter::indent);
    });
}

void writeOddities(TextWriter& text, const Package& package) {
    if (package.oddities.empty()) {
        return;
    }
    text.heading("Members that korvel does not make; they were not followed");
    text.rows(package.oddities, mostRows, [&](const Oddity& oddity) {
        text.paragraph(shownName(oddity.member) + ": " + forTerminal(oddity.what), TextWriter::indent);
    });
}

/// The packages inside, each followed by those inside it, with their depths.
std::vector<std::pair<std::size_t, const Package*>> allNested(const Package& package) {
    std::vector<std::pair<std::size_t, const Package*>> all;
    std::vector<std::pair<std::size_t, const Package*>> waiting{{0, &package}};
    while (!waiting.empty()) {
        const auto [depth, next] = waiting.back();
        waiting.pop_back();
        if (depth > 0) {
            all.emplace_back(depth, next);
        }
        for (std::size_t count = next->nested.size(); count > 0; --count) {
            waiting.emplace_back(depth + 1, &next->nested[count - 1]);
        }
    }
    return all;
}

void writeNested(TextWriter& text, const Package& package) {
    if (package.nested.empty()) {
        return;
    }
    text.heading("Packages inside");
    text.rows(allNested(package), mostRows, [&](const auto& row) {
        const auto& [depth, nested] = row;
        const std::string time = nested->time ? ", " + secondsText(*nested->time) : "";
        text.paragraph(shownName(nested->source) + ": " + std::string(nameOf(nested->verdict)) + time + ". " +
                           meaningOf(*nested),
                       depth * TextWriter::indent);
    });
}

}  // namespace

std::string shownName(std::string_view name) {
    return cutTo(longestName, forTerminal(name.starts_with("./") ? name.substr(2) : name));
}

void writeCause(TextWriter& text, const std::string& cause, std::optional<Certainty> certainty,
                std::size_t margin) {
    if (!cause.empty()) {
        const auto label = rowOf(causeLabels, certainty.value_or(Certainty::unknown));
        text.paragraph(std::string(label).append(forTerminal(cause)), margin);
    }
}

void writeEvidence(TextWriter& text, const std::vector<Evidence>& evidence, std::size_t margin) {
    text.rows(evidence, mostLines, [&](const Evidence& line) {
        const std::string source = line.source.empty() ? "" : shownName(line.source) + ": ";
        const std::string whole = source + forTerminal(line.text);
        text.paragraph(cutTo(longestEvidence, whole), margin);
    });
}

void writeVerdict(TextWriter& text, const Package& package, const std::string& outer) {
    const std::string name = outer.empty() ? forTerminal(package.source) : outer + shownName(package.source);
    text.line(text.inked(Ink::bold, name) + ": " +
              text.inked(rowOf(verdictInks, package.verdict), nameOf(package.verdict)));
}

void writeCheck(TextWriter& text, const Package& package, const std::string& outer) {
    writeVerdict(text, package, outer);
    text.paragraph(meaningOf(package));
    writeCause(text, package.cause, package.certainty, 0);
    writeEvidence(text, package.evidence, TextWriter::indent);
    text.line();
    writeFacts(text, package);
    writeTroubles(text, package, true);
    writeTroubles(text, package, false);
    writeUnread(text, package);
    writeComplaints(text, package, mostLines);
    writeOverlaps(text, package);
    writeOddities(text, package);
    writeNested(text, package);
    writeNames(text, package, "Perhaps left over from an earlier run", isDoubtful);
    writeNames(text, package, "Present", [](const Part& part) { return part.expected && !isDoubtful(part); });
    writeNames(text, package, "Present, but not required",
               [](const Part& part) { return !part.expected && !isDoubtful(part); });
}

void renderCheck(std::ostream& out, const Package& package, const TextStyle& style) {
    TextWriter text(out, style);
    writeCheck(text, package, {});
}

}  // namespace Report
