#include <algorithm>
#include <array>
#include <cctype>
#include <concepts>
#include <functional>
#include <set>
#include <utility>

#include <toml++/toml.h>

#include "Names.hpp"
#include "Rule.hpp"
#include "RuleSet.hpp"
#include "TextPattern.hpp"

namespace Report {
namespace {

/// One table of a rule file, with its place for messages.
class RuleTable {
public:
    RuleTable(const toml::table& tomlTable, const std::string& fileName, PatternCheck patternCheck)
        : table(tomlTable), file(fileName), check(patternCheck) {}

    [[noreturn]] void refuse(const toml::node& node, const std::string& reason) const {
        throw RuleError(file + ":" + std::to_string(node.source().begin.line) + ": " + reason);
    }
    [[noreturn]] void refuse(const std::string& reason) const { refuse(table, reason); }

    const toml::node* find(std::string_view key) const { return table.get(key); }

    std::string textOf(std::string_view key) const {
        const toml::node* const node = find(key);
        if (node == nullptr) {
            refuse("the key '" + std::string(key) + "' is missing");
        }
        const auto* const text = node->as_string();
        if (text == nullptr || text->get().empty()) {
            refuse(*node, "'" + std::string(key) + "' must be a text");
        }
        return text->get();
    }

    /// A text or a list of texts. Empty if the key is missing.
    std::vector<std::string> listOf(std::string_view key) const {
        const toml::node* const node = find(key);
        if (node == nullptr || node->is_string()) {
            return node == nullptr ? std::vector<std::string>() : std::vector{textOf(key)};
        }
        std::vector<std::string> texts;
        const toml::array* const array = node->as_array();
        if (array == nullptr || array->empty()) {
            refuse(*node, "'" + std::string(key) + "' must be a text or a list of texts");
        }
        for (const toml::node& item : *array) {
            if (!item.is_string()) {
                refuse(item, "'" + std::string(key) + "' must be a text or a list of texts");
            }
            texts.push_back(item.as_string()->get());
        }
        return texts;
    }

    /// The value of a word, found by `find`, which returns no value for another word.
    template <typename Find>
    auto wordOf(std::string_view key, const std::string& word, Find find) const {
        const auto value = find(word);
        if (!value) {
            refuse(*this->find(key), "'" + std::string(key) + "' cannot be '" + word + "'");
        }
        return *value;
    }

    std::optional<std::string> patternOf(std::string_view key) const {
        if (find(key) == nullptr) {
            return std::nullopt;
        }
        std::string pattern = textOf(key);
        if (checksPatterns()) {
            try {
                const TextPattern compiled(pattern, TextPattern::Mode::anyCase);
            } catch (const PatternError& error) {
                refuse(*find(key), "'" + std::string(key) + "' is no pattern: " + error.what());
            }
        }
        return pattern;
    }

    bool checksPatterns() const { return check == PatternCheck::compile; }

    const toml::table& keys() const { return table; }
    RuleTable rowsOf(const toml::table& inside) const { return {inside, file, check}; }

private:
    const toml::table& table;
    const std::string& file;
    PatternCheck check;
};

/// The enumerator of a name, of the first `count` ones.
template <typename Enumeration, std::size_t count>
std::optional<Enumeration> byName(std::string_view name) {
    for (std::size_t index = 0; index < count; ++index) {
        if (nameOf(static_cast<Enumeration>(index)) == name) {
            return static_cast<Enumeration>(index);
        }
    }
    return std::nullopt;
}

constexpr std::size_t severityCount = 3;
constexpr std::size_t levelCount = 4;
constexpr std::size_t stateCount = 7;
constexpr std::size_t verdictCount = 6;

void readPattern(const RuleTable& table, Rule& rule) {
    rule.pattern = table.patternOf("pattern");
    rule.except = table.patternOf("except");
    if (table.find("level") != nullptr) {
        rule.level = table.wordOf("level", table.textOf("level"), byName<Level, levelCount>);
    }
}

void checkGroups(const RuleTable& table, const Rule& rule) {
    const TextPattern pattern(*rule.value, TextPattern::Mode::anyCase);
    for (const std::string& form : rule.of) {
        if (!pattern.canExpand(form)) {
            table.refuse(*table.find("of"), "'value' does not have the groups of '" + form + "'");
        }
    }
}

void readValue(const RuleTable& table, Rule& rule) {
    rule.value = table.patternOf("value");
    rule.except = table.patternOf("except");
    rule.comparisonText = table.textOf("is");
    rule.comparison = table.wordOf("is", rule.comparisonText, parseComparison);
    rule.of = table.listOf("of");
    if (rule.comparison.percent == rule.of.empty()) {
        table.refuse(*table.find("is"), "'of' belongs to a comparison in %, and only to one");
    }
    if (table.checksPatterns()) {
        checkGroups(table, rule);
    }
}

void readState(const RuleTable& table, Rule& rule) {
    const bool package = rule.where == std::vector{std::string(wholePackage)};
    for (const std::string& word : table.listOf("state")) {
        if (package) {
            rule.verdicts.push_back(table.wordOf("state", word, byName<Verdict, verdictCount>));
        } else {
            rule.states.push_back(table.wordOf("state", word, byName<State, stateCount>));
        }
    }
    rule.cause = table.patternOf("cause");
}

void readFact(const RuleTable& table, Rule& rule) {
    for (const std::string& word : table.listOf("fact")) {
        rule.facts.push_back(table.wordOf("fact", word, factOf));
    }
}

/// What a rule can look for: the key that says so, the keys that it allows and the function that reads them.
struct RuleKind {
    std::string_view key;
    std::array<std::string_view, 3> further;
    void (*read)(const RuleTable& table, Rule& rule);
};

constexpr std::array ruleKinds{
    RuleKind{"pattern", {"level", "except"}, readPattern},
    RuleKind{"value", {"is", "of", "except"}, readValue},
    RuleKind{"state", {"cause"}, readState},
    RuleKind{"fact", {}, readFact},
    RuleKind{"level", {}, readPattern},
};

constexpr std::array<std::string_view, 7> commonKeys{"id",     "where",    "severity",       "meaning",
                                                     "advice", "examples", "counterexamples"};

const RuleKind& ruleKindOf(const RuleTable& table) {
    const auto* const kind =
        std::ranges::find_if(ruleKinds, [&](const RuleKind& row) { return table.find(row.key) != nullptr; });
    if (kind == ruleKinds.end()) {
        table.refuse("one of the keys pattern, value, state, fact and level is missing");
    }
    return *kind;
}

bool allows(const RuleKind& kind, std::string_view key) {
    const bool further = std::ranges::find(kind.further, key) != kind.further.end();
    return key == kind.key || (further && !key.empty()) ||
           std::ranges::find(commonKeys, key) != commonKeys.end();
}

Rule readRule(const RuleTable& table, const std::string& file) {
    Rule rule;
    rule.id = table.textOf("id");
    rule.file = file;
    const RuleKind& kind = ruleKindOf(table);
    for (const auto& [key, node] : table.keys()) {
        if (!allows(kind, key.str())) {
            table.refuse(node, "'" + std::string(key.str()) + "' is no key of a rule with '" +
                                   std::string(kind.key) + "'");
        }
    }
    rule.severity = table.wordOf("severity", table.textOf("severity"), byName<Severity, severityCount>);
    rule.where = table.find("where") == nullptr ? std::vector{table.textOf("where")} : table.listOf("where");
    rule.meaning = table.textOf("meaning");
    rule.advice = table.textOf("advice");
    rule.examples = table.listOf("examples");
    rule.counterexamples = table.listOf("counterexamples");
    kind.read(table, rule);
    return rule;
}

LogForms::Levels readLevels(const RuleTable& table) {
    LogForms::Levels levels;
    const toml::node* const node = table.find("levels");
    if (node == nullptr) {
        return levels;
    }
    const toml::table* const words = node->as_table();
    if (words == nullptr) {
        table.refuse(*node, "'levels' must be a table of words and levels");
    }
    const RuleTable rows = table.rowsOf(*words);
    for (const auto& [word, level] : *words) {
        std::string lower(word.str());
        std::ranges::transform(lower, lower.begin(),
                               [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
        levels[lower] = rows.wordOf(word.str(), rows.textOf(word.str()), byName<Level, levelCount>);
    }
    return levels;
}

FormRule readForm(const RuleTable& table, const std::string& file) {
    constexpr std::array<std::string_view, 5> keys{"id", "pattern", "levels", "examples", "counterexamples"};
    for (const auto& [key, node] : table.keys()) {
        if (std::ranges::find(keys, key.str()) == keys.end()) {
            table.refuse(node, "'" + std::string(key.str()) + "' is no key of a form");
        }
    }
    FormRule form;
    form.id = table.textOf("id");
    form.file = file;
    form.pattern = table.textOf("pattern");
    form.levels = readLevels(table);
    form.examples = table.listOf("examples");
    form.counterexamples = table.listOf("counterexamples");
    try {
        LogForms().add(form.pattern, form.levels);
    } catch (const PatternError& error) {
        table.refuse(*table.find("pattern"),
                     "'pattern' is no form of log lines: " + std::string(error.what()));
    }
    return form;
}

toml::table parseToml(const std::string& text, const std::string& file) {
    try {
        return toml::parse(text);
    } catch (const toml::parse_error& error) {
        throw RuleError(file + ":" + std::to_string(error.source().begin.line) + ": " +
                        std::string(error.description()));
    }
}

}  // namespace

RuleFile parseRules(const std::string& text, const std::string& file, PatternCheck check) {
    const toml::table document = parseToml(text, file);
    const RuleTable whole(document, file, check);
    RuleFile parsed;
    std::set<std::string> identifiers;
    for (const auto& [key, node] : document) {
        const toml::array* const tables = node.as_array();
        const bool isForm = key.str() == "form";
        if ((!isForm && key.str() != "rule") || tables == nullptr || !tables->is_homogeneous<toml::table>()) {
            whole.refuse(node,
                         "'" + std::string(key.str()) + "' is not a list of tables [[rule]] or [[form]]");
        }
        for (const toml::node& item : *tables) {
            const RuleTable table = whole.rowsOf(*item.as_table());
            if (isForm) {
                parsed.forms.push_back(readForm(table, file));
            } else {
                parsed.rules.push_back(readRule(table, file));
            }
            const std::string& id = isForm ? parsed.forms.back().id : parsed.rules.back().id;
            if (!identifiers.insert(id).second) {
                table.refuse("the rule '" + id + "' appears twice");
            }
        }
    }
    return parsed;
}

}  // namespace Report
