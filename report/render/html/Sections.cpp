#include "Sections.hpp"

#include <algorithm>

#include "Evidence.hpp"
#include "Names.hpp"
#include "PartGroups.hpp"
#include "Phrases.hpp"
#include "Pool.hpp"
#include "Prose.hpp"
#include "TimeText.hpp"
#include "VerdictText.hpp"

namespace Report::Html {
namespace {

std::string timeFact(const Package& package) {
    if (!package.time) {
        return "unknown";
    }
    return secondsText(*package.time) + (package.clockUnset ? ": the clock of the board was not set" : "");
}

std::string zoneFact(const Package& package) {
    return package.zone ? *package.zone : "unknown, UTC is taken";
}

std::string findingsFact(const Package& package) {
    std::string text;
    for (const Severity severity : {Severity::error, Severity::warning, Severity::note}) {
        const auto count = std::ranges::count(package.findings, severity, &Finding::severity);
        if (count > 0) {
            text += (text.empty() ? "" : ", ") + counted(static_cast<std::uint64_t>(count), nameOf(severity));
        }
    }
    return text.empty() ? "none" : text;
}

/// What identifies the file of a package. A package inside another one has no file of its own.
Rows fileFactsOf(const Package& package) {
    if (package.sha256.empty()) {
        return {};
    }
    return {fact("Path", shortened(package.source, 500)), fact("Size", sizeText(package.size)),
            fact("SHA-256", package.sha256)};
}

Fields link(const View& view, const char* section, const char* text, std::size_t count,
            std::string_view tone = "calm") {
    return Fields{}
        .set("target", view.id + '-' + section)
        .set("text", text)
        .set("count", count == 0 ? std::string{} : grouped(count))
        .set("tone", tone);
}

std::string_view worstTone(const std::vector<Finding>& findings) {
    const auto worst = std::ranges::min_element(findings, {}, &Finding::severity);
    return worst == findings.end() ? "calm" : toneOf(worst->severity);
}

}  // namespace

std::string partsFact(const Package& package) {
    const std::size_t expected = countExpected(package);
    const auto present = std::ranges::count_if(
        package.parts, [](const Part& part) { return part.expected && part.state == State::present; });
    return grouped(static_cast<std::uint64_t>(present)) + " of " + grouped(expected);
}

std::string kindFact(const Package& package) {
    const std::string_view kind = keywordOf(package.kind);
    return kind.empty() ? "unknown" : std::string{kind};
}

Fields fact(std::string term, std::string text) {
    return Fields{}.set("term", std::move(term)).set("text", std::move(text));
}

Fields headlineOf(const View& view, Rows moreFacts) {
    const Package& package = *view.package;
    Rows facts{fact("Board", package.board ? shortened(*package.board, 200) : "unknown"),
               fact("Time", timeFact(package)), fact("Kind", kindFact(package)),
               fact("Parts present", partsFact(package)), fact("Findings", findingsFact(package))};
    std::ranges::move(moreFacts, std::back_inserter(facts));
    facts.push_back(fact("Zone of local times", zoneFact(package)));
    Fields fields;
    fields.set("verdict", nameOf(package.verdict))
        .set("tone", toneOf(package.verdict))
        .set("sentence", shortened(meaningOf(package), 1000))
        .set("certainty", package.certainty ? nameOf(*package.certainty) : std::string_view{})
        .set("facts", std::move(facts))
        .setList("fileFacts", fileFactsOf(package));
    setProse(fields, "cause", package.cause, 1000);
    setEvidence(fields, package.evidence);
    return fields;
}

Rows contentsOf(const View& view) {
    const Package& package = *view.package;
    const std::size_t troubled = countTroubled(package, true);
    Rows rows{link(view, "findings", "Findings", package.findings.size(), worstTone(package.findings)),
              link(view, "parts", "Parts", troubled, "warn")};
    const auto add = [&](bool condition, const char* section, const char* text, std::size_t count) {
        if (condition) {
            rows.push_back(link(view, section, text, count));
        }
    };
    const std::size_t irregular = package.oddities.size() + package.unread.size();
    add(!poolsOf(package.values).empty(), "pools", "Pools and heaps", 0);
    add(!package.values.empty(), "values", "Values", 0);
    add(std::ranges::any_of(package.parts, [](const Part& part) { return part.time.has_value(); }),
        "freshness", "Freshness", 0);
    add(true, "run", "The run", 0);
    add(!view.nested.empty(), "nested", "Nested packages", view.nested.size());
    add(irregular > 0, "irregular", "Not followed, not read", irregular);
    add(std::ranges::any_of(package.parts, hasText), "texts", "Texts", 0);
    return rows;
}

}  // namespace Report::Html
