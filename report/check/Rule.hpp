#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "LogEntry.hpp"
#include "LogForms.hpp"
#include "Package.hpp"

namespace Report {

/// Something about a package that is neither a state, nor a value, nor a line.
enum class Fact : std::uint8_t {
    overlap,
    logFull,
    notText,
    oldCollector,
    perhapsLeftOver,
    clockUnset,
    oddMember,
    zoneUnknown,
    sidecarAbsent,
    sidecarForeign,
    sidecarUnreadable,
    unknownComplaint,
    runFailed,
    errorsMissing,
    dumpsRemoved,
};

/// The name of a fact in rule files.
std::string_view nameOf(Fact fact);
std::optional<Fact> factOf(std::string_view name);

enum class Relation : std::uint8_t { less, lessOrEqual, equal, notEqual, greaterOrEqual, greater };

/// A comparison of a value with a number, or with a share of other values: "> 0", ">= 90 %".
struct Comparison {
    Relation relation = Relation::greater;
    double number = 0;
    bool percent = false;
};

/// The comparison in a text such as ">= 90 %". No value if the text is none.
std::optional<Comparison> parseComparison(std::string_view text);

/// One rule, as its file has it. Exactly one of pattern, level, value, states, verdicts and facts says what
/// it looks for, but a pattern can have a level.
struct Rule {
    std::string id;
    std::string file;                ///< for people
    std::vector<std::string> where;  ///< patterns of part names, or one of the words below
    Severity severity = Severity::note;
    std::string meaning;
    std::string advice;
    std::vector<std::string> examples;
    std::vector<std::string> counterexamples;

    std::optional<std::string> pattern;  ///< of lines
    std::optional<Level> level;          ///< of log entries: this one or worse
    std::optional<std::string> value;    ///< pattern of whole names
    Comparison comparison;
    std::string comparisonText;         ///< as the file has it
    std::vector<std::string> of;        ///< of a share: names of values, with the groups of `value`
    std::optional<std::string> except;  ///< pattern of what does not count in a line or a name
    std::vector<State> states;
    std::optional<std::string> cause;  ///< pattern of the cause of a state
    std::vector<Verdict> verdicts;
    std::vector<Fact> facts;

    bool looksAtLines() const { return pattern || level; }
};

/// A form of log lines, as a file of rules has it.
struct FormRule {
    std::string id;
    std::string file;
    std::string pattern;
    LogForms::Levels levels;
    std::vector<std::string> examples;
    std::vector<std::string> counterexamples;
};

/// The contents of a file of rules.
struct RuleFile {
    std::vector<Rule> rules;
    std::vector<FormRule> forms;
};

// Words of `where` that stand for no part name.
inline constexpr std::string_view allLogs = "logs";
inline constexpr std::string_view sidecarLines = "sidecar";
inline constexpr std::string_view wholePackage = "package";

/// Whether to compile each pattern, to find errors in it. That takes longer than all else, and the tests do
/// it for the shipped rules.
enum class PatternCheck { compile, skip };

/// Reads a file of rules. Throws RuleError with `file`, line and reason.
RuleFile parseRules(const std::string& text, const std::string& file,
                    PatternCheck check = PatternCheck::compile);

}  // namespace Report
