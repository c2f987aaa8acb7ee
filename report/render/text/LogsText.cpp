#include "EntryText.hpp"
#include "PackageLoader.hpp"
#include "PartChoice.hpp"
#include "SafeText.hpp"
#include "ShowSections.hpp"

namespace Report {
namespace {

bool isChosen(const ShowChoice& choice, const LogEntry& entry) {
    const bool early = choice.since && (!entry.time || *entry.time < *choice.since);
    const bool late = choice.until && (!entry.time || *entry.time > *choice.until);
    return !early && !late && (!choice.grep || choice.grep->fits(entry.tag + ": " + entry.text));
}

void writeLog(const ShowContext& show, const Package& package, const Part& part) {
    bool first = true;
    forEachEntry(package, part, show.choice.maxLine, [&](const LogEntry& entry) {
        if (isChosen(show.choice, entry)) {
            if (first) {
                show.text.heading(forTerminal(fullName(show.prefix, part)) + ": log, in UTC");
            }
            first = false;
            writeEntry(show.text, entry);
        }
        return true;
    });
}

}  // namespace

void writeLogs(const ShowContext& show, const Package& package) {
    for (const Part& part : package.parts) {
        if (part.log && show.selectsPart(part.name)) {
            writeLog(show, package, part);
        }
    }
}

}  // namespace Report
