#include <map>
#include <set>
#include <string>
#include <string_view>

#include "PartChoice.hpp"
#include "SafeText.hpp"
#include "ShowSections.hpp"
#include "ValueLine.hpp"

namespace Report {
namespace {

/// The titles of the values of each part.
using Titles = std::map<std::string_view, std::set<std::string_view>>;

Titles titlesOf(const Package& package) {
    Titles titles;
    for (const Value& value : package.values) {
        titles[value.part].insert(value.title);
    }
    return titles;
}

/// Whether a line of a table is neither a value nor a title, nor the first or last line of a dump.
bool isOther(std::string_view line, const std::set<std::string_view>& titles) {
    const std::string_view trimmed = trimLine(line);
    const bool isMark = trimmed.starts_with('<') && trimmed.ends_with("_dump>");
    return !trimmed.empty() && !isMark && !titles.contains(trimmed) && !parseValueLine(trimmed);
}

/// Whether a part is shown whole: it is no table, or the user chose it.
bool isWhole(const ShowChoice& choice, const Titles& titles, const Part& part) {
    return choice.part || !titles.contains(part.name);
}

bool isShown(const ShowChoice& choice, const Titles& titles, const Part& part, std::string_view line) {
    if (choice.grep) {
        return choice.grep->fits(line);
    }
    return isWhole(choice, titles, part) || (part.otherLines > 0 && isOther(line, titles.at(part.name)));
}

std::string headingOf(const ShowContext& show, const Titles& titles, const Part& part) {
    const bool others = !show.choice.grep && !isWhole(show.choice, titles, part);
    return forTerminal(fullName(show.prefix, part)) + (others ? ": lines without a value" : "");
}

void writeText(const ShowContext& show, const Titles& titles, const Part& part) {
    bool first = true;
    part.text.forEachLine(show.choice.maxLine, [&](std::string_view line) {
        if (isShown(show.choice, titles, part, line)) {
            if (first) {
                show.text.heading(headingOf(show, titles, part));
            }
            first = false;
            line.remove_suffix(line.ends_with('\r') ? 1 : 0);
            show.text.line("  " + forTerminal(line));
        }
        return true;
    });
}

}  // namespace

void writeTexts(const ShowContext& show, const Package& package) {
    const Titles titles = titlesOf(package);
    for (const Part& part : package.parts) {
        if (!part.log && show.selectsPart(part.name)) {
            writeText(show, titles, part);
        }
    }
}

}  // namespace Report
