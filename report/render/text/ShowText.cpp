#include <array>
#include <ostream>
#include <string>

#include "CheckText.hpp"
#include "Names.hpp"
#include "PartChoice.hpp"
#include "Renderers.hpp"
#include "SafeText.hpp"
#include "ShowSections.hpp"
#include "TimeText.hpp"
#include "Words.hpp"

namespace Report {
namespace {

/// Which sections the user's choice leaves.
struct Sections {
    bool check;   ///< the whole text of check; else only the verdict
    bool tables;  ///< findings and values
    bool texts;
};

Sections sectionsOf(const ShowChoice& choice) {
    const bool timed = choice.since || choice.until;
    const bool lines = choice.logsOnly || timed || choice.grep;
    return {!choice.part && !lines, !lines, !choice.logsOnly && !timed};
}

// NOLINTNEXTLINE(misc-no-recursion): --max-depth bounds the recursion
void showPackage(const ShowContext& show, const Package& package) {
    const Sections sections = sectionsOf(show.choice);
    if (sections.check) {
        writeCheck(show.text, package, show.outer);
    } else if (show.prefix.empty()) {
        writeVerdict(show.text, package, {});
    }
    if (sections.tables) {
        writeChosenParts(show, package);
        writeFindings(show, package);
        writeValues(show, package);
    }
    if (sections.texts) {
        writeTexts(show, package);
    }
    writeLogs(show, package);
    for (const Package& nested : package.nested) {
        if (sections.check) {
            show.text.line();
        }
        showPackage({show.text, show.rules, show.choice, nestedPrefix(show.prefix, nested),
                     show.outer + shownName(package.source) + " > "},
                    nested);
    }
}

}  // namespace

bool ShowContext::selectsPart(const std::string& name) const {
    return !choice.part || selects(*choice.part, prefix + name);
}

void writeChosenParts(const ShowContext& show, const Package& package) {
    if (!show.choice.part) {
        return;
    }
    for (const Part& part : package.parts) {
        if (show.selectsPart(part.name)) {
            const std::string time = part.time ? ", " + secondsText(*part.time) : "";
            const std::string size = part.state == State::missing ? "" : ", " + sizeText(part.size);
            std::string line = forTerminal(fullName(show.prefix, part));
            show.text.paragraph(line.append(": ").append(nameOf(part.state)).append(size).append(time));
            writeCause(show.text, part.cause, part.certainty, TextWriter::indent);
            writeEvidence(show.text, part.evidence, TextWriter::indent);
        }
    }
}

bool hasChosenPart(const Package& package, const std::string& choice) {
    return selectsAny(choice, package, {});
}

void renderShow(std::ostream& out, const Package& package, const RuleSet& rules, const ShowChoice& choice,
                const TextStyle& style) {
    TextWriter text(out, style);
    showPackage({text, rules, choice, {}, {}}, package);
}

}  // namespace Report
