#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>

#include "Difference.hpp"
#include "Package.hpp"
#include "RuleSet.hpp"
#include "TextPattern.hpp"

namespace Report {

/// How text for a terminal looks.
struct TextStyle {
    bool colour = false;
    std::size_t width = 80;  ///< columns
};

/// What show prints. Without a choice, it prints everything. The choices that are made apply together.
struct ShowChoice {
    std::optional<std::string> part = {};  ///< only this part, or the parts of this folder
    bool logsOnly = false;
    std::optional<Time> since = {};  ///< only log entries of this time or later
    std::optional<Time> until = {};
    std::optional<TextPattern> grep = {};  ///< only log entries and lines of texts that fit
    std::size_t maxLine = std::size_t{1} << 20;
};

/// Whether show has anything for ShowChoice::part.
bool hasChosenPart(const Package& package, const std::string& choice);

/// Each prints judged packages; all but the first need texts that were kept. All texts are made safe.
void renderCheck(std::ostream& out, const Package& package, const TextStyle& style);
void renderShow(std::ostream& out, const Package& package, const RuleSet& rules, const ShowChoice& choice,
                const TextStyle& style);
void renderHtml(std::ostream& out, std::span<const Package> packages, const RuleSet& rules,
                std::size_t maxLine);
void renderJson(std::ostream& out, std::span<const Package> packages, std::size_t maxLine);
void renderMetrics(std::ostream& out, std::span<const Package> packages, Time now);
void renderDifference(std::ostream& out, const Difference& difference, const TextStyle& style);

}  // namespace Report
