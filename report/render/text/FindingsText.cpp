#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "CheckText.hpp"
#include "Names.hpp"
#include "SafeText.hpp"
#include "ShowSections.hpp"
#include "Words.hpp"

namespace Report {
namespace {

constexpr std::size_t severityWidth = 9;  // columns of "warning" and a gap
constexpr std::array severityInks{Ink::bad, Ink::warning, Ink::plain};

std::string placeOf(const Finding& finding, const std::string& prefix) {
    if (finding.part.empty()) {
        return {};
    }
    const std::string count = finding.count > 1 ? " (" + grouped(finding.count) + " times)" : "";
    return " in " + forTerminal(prefix + finding.part) + count;
}

void writeFinding(const ShowContext& show, const Finding& finding) {
    TextWriter& text = show.text;
    const auto severity = static_cast<std::size_t>(finding.severity);
    const std::size_t margin = TextWriter::indent + severityWidth;
    text.labelled(nameOf(finding.severity), forTerminal(finding.rule) + placeOf(finding, show.prefix),
                  severityWidth, TextWriter::indent, severityInks.at(severity));
    text.paragraph(forTerminal(finding.meaning), margin);
    if (!finding.advice.empty()) {
        text.paragraph("To do: " + forTerminal(finding.advice), margin);
    }
    writeEvidence(text, finding.evidence, margin);
}

}  // namespace

void writeFindings(const ShowContext& show, const Package& package) {
    bool first = true;
    for (const Finding& finding : package.findings) {
        if (!show.selectsPart(finding.part)) {
            continue;
        }
        if (first) {
            show.text.heading("Findings");
        }
        first = false;
        writeFinding(show, finding);
    }
}

}  // namespace Report
