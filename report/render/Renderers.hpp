#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>

#include "Difference.hpp"
#include "Package.hpp"
#include "RuleSet.hpp"

namespace Report {

/// How text for a terminal looks.
struct TextStyle {
    bool colour = false;
    std::size_t width = 80;  ///< columns
};

/// What show prints. Without a choice, it prints everything.
struct ShowChoice {
    std::optional<std::string> part;  ///< only this part
    bool logsOnly = false;
    std::optional<Time> since;
    std::optional<Time> until;
    std::optional<std::string> grep;  ///< RE2 pattern for log lines and texts
    std::size_t maxLine = std::size_t{1} << 20;
};

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
