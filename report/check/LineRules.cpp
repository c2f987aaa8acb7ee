#include "LineRules.hpp"

#include <algorithm>
#include <functional>

#include "Content.hpp"
#include "EntryParser.hpp"
#include "LineSplitter.hpp"
#include "LogEntry.hpp"
#include "PartTable.hpp"
#include "RulePattern.hpp"

namespace Report {
namespace {

constexpr std::size_t longestSidecarLine = 4096;  // bytes

}  // namespace

struct LineRules::LineRule {
    LineRule(const Rule& ofRule, std::size_t place)
        : rule(ofRule),
          index(place),
          where(ofRule.where),
          logs(std::ranges::count(ofRule.where, allLogs) > 0),
          sidecar(std::ranges::count(ofRule.where, sidecarLines) > 0),
          pattern(ofRule.pattern.value_or(""), ofRule.except) {}

    const Rule& rule;
    std::size_t index;
    PartPattern where;
    bool logs;
    bool sidecar;
    RulePattern pattern;
};

/// Searches lines for several rules at once.
class LineRules::LineSearch {
public:
    explicit LineSearch(std::vector<LineRule*> lineRules)
        : wanted(std::move(lineRules)), patterns(patternsOf(wanted), PatternSet::Fit::anywhere) {
        for (LineRule* const rule : wanted) {
            (rule->rule.pattern ? withPattern : byLevel).push_back(rule);
        }
        needsLevel = std::ranges::any_of(wanted, [](LineRule* rule) { return rule->rule.level.has_value(); });
    }

    /// `parser` is for a log, else null.
    void line(std::string_view line, const EntryParser* parser, const std::function<void(LineRule&)>& found) {
        patterns.find(line, fitting);
        if (fitting.empty() && byLevel.empty()) {
            return;
        }
        const std::optional<Level> level =
            parser != nullptr && needsLevel ? levelOf(*parser, line) : std::nullopt;
        for (const std::size_t place : fitting) {
            visit(*withPattern[place], line, level, found);
        }
        for (LineRule* const rule : byLevel) {
            visit(*rule, line, level, found);
        }
    }

private:
    static std::vector<std::string> patternsOf(const std::vector<LineRule*>& rules) {
        std::vector<std::string> patterns;
        for (LineRule* const rule : rules) {
            if (rule->rule.pattern) {
                patterns.push_back(*rule->rule.pattern);
            }
        }
        return patterns;
    }

    static void visit(LineRule& rule, std::string_view line, std::optional<Level> level,
                      const std::function<void(LineRule&)>& found) {
        const bool levelFits = !rule.rule.level || (level && *level <= *rule.rule.level);
        if (levelFits && rule.pattern.counts(line)) {
            found(rule);
        }
    }

    std::optional<Level> levelOf(const EntryParser& parser, std::string_view line) {
        static_cast<void>(parser.parse(line, entry));
        return entry.level;
    }

    std::vector<LineRule*> wanted;
    PatternSet patterns;
    std::vector<LineRule*> withPattern;  // in the order of the patterns
    std::vector<LineRule*> byLevel;
    bool needsLevel = false;
    LogEntry entry;
    std::vector<std::size_t> fitting;
};

LineRules::LineRules(const std::vector<Rule>& allRules) : rules(allRules) {
    for (std::size_t index = 0; index < rules.size(); ++index) {
        if (rules[index].looksAtLines()) {
            lineRules.push_back(std::make_unique<LineRule>(rules[index], index));
        }
    }
}

LineRules::~LineRules() = default;

std::vector<LineRules::LineRule*> LineRules::rulesFor(const Part& part) const {
    std::vector<LineRule*> wanted;
    const bool log = part.log || isLinuxLog(placeOf(part.name));
    for (const auto& rule : lineRules) {
        if ((rule->logs && log) || rule->where.fits(part.name)) {
            wanted.push_back(rule.get());
        }
    }
    return wanted;
}

LineRules::LineSearch& LineRules::searchFor(const std::vector<LineRule*>& wanted) {
    std::unique_ptr<LineSearch>& search = searches[wanted];
    if (search == nullptr) {
        search = std::make_unique<LineSearch>(wanted);
    }
    return *search;
}

void LineRules::applyToText(const Part& part, const EntryParser& parser, std::size_t maxLine,
                            FindingList& findings) {
    const std::vector<LineRule*> wanted = rulesFor(part);
    if (wanted.empty()) {
        return;
    }
    LineSearch& search = searchFor(wanted);
    part.text.forEachLine(maxLine, [&](std::string_view line) {
        search.line(line, part.log ? &parser : nullptr,
                    [&](LineRule& rule) { findings.add(rule.index, part.name, part.name, line); });
        return true;
    });
}

void LineRules::applyToSidecar(const Sidecar& sidecar, FindingList& findings) {
    std::vector<LineRule*> wanted;
    for (const auto& rule : lineRules) {
        if (rule->sidecar) {
            wanted.push_back(rule.get());
        }
    }
    LineSearch& search = searchFor(wanted);
    const auto visit = [&](std::string_view line) {
        search.line(line, nullptr, [&](LineRule& rule) { findings.add(rule.index, {}, sidecarLines, line); });
    };
    for (const auto& [name, result] : sidecar.probes) {
        visit(std::string("probe ").append(name).append(": ").append(result));
    }
    LineSplitter lines(longestSidecarLine);
    lines.add(sidecar.standardError, visit);
    visit(lines.rest());
}

void LineRules::apply(const Package& package, std::size_t maxLine, FindingList& findings) {
    const EntryParser parser(Zone(), std::nullopt, package.forms);  // only for levels
    for (const Part& part : package.parts) {
        if (part.text.size() > 0) {
            applyToText(part, parser, maxLine, findings);
        }
    }
    if (package.sidecarState == SidecarState::used && package.sidecar) {
        applyToSidecar(*package.sidecar, findings);
    }
}

}  // namespace Report
