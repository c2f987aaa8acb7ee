#include "RuleSet.hpp"

#include <algorithm>
#include <utility>

#include "CompiledRules.hpp"
#include "Names.hpp"
#include "Rule.hpp"
#include "ShippedRules.hpp"

namespace Report {
namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text.append(text.empty() ? "" : ", ").append(word);
    }
    return text;
}

std::string quoted(std::string_view text) {
    return std::string("`").append(text).append("`");
}

/// "`cut` or `stale`".
template <typename Enumerator>
std::string alternatives(const std::vector<Enumerator>& enumerators) {
    std::string text;
    for (const Enumerator enumerator : enumerators) {
        text.append(text.empty() ? "" : " or ").append(quoted(nameOf(enumerator)));
    }
    return text;
}

/// What the rule looks for, in a line.
std::string subjectOf(const Rule& rule) {
    std::string subject;
    if (rule.level) {
        subject = "log entries of the level " + std::string(nameOf(*rule.level)) + " or worse";
    }
    if (rule.pattern) {
        subject += (subject.empty() ? "lines" : ",") + std::string(" that match ") + *rule.pattern;
    }
    if (rule.value) {
        subject = "values " + rule.comparisonText + (rule.of.empty() ? "" : " of " + joined(rule.of)) +
                  " with a name that matches " + *rule.value;
    }
    if (!rule.states.empty()) {
        subject = "parts in state " + alternatives(rule.states);
    }
    if (!rule.verdicts.empty()) {
        subject = "packages with the verdict " + alternatives(rule.verdicts);
    }
    if (!rule.facts.empty()) {
        subject = "the fact " + alternatives(rule.facts);
    }
    if (rule.cause) {
        subject += " whose cause matches " + quoted(*rule.cause);
    }
    return subject + (rule.except ? ", without what matches " + *rule.except : "");
}

std::string explanationOf(const FormRule& form) {
    return form.id + " (form of log lines)\n" +  //
           "Finds:    " + form.pattern + "\n" +  //
           "File:     " + form.file + "\n";
}

}  // namespace

struct RuleSet::Rules {
    std::vector<Rule> all;
    std::vector<FormRule> forms;
    std::unique_ptr<CompiledRules> ofAll;  ///< null until a package needs it

    const Rule* find(std::string_view identifier) const {
        const auto found = std::ranges::find(all, identifier, &Rule::id);
        return found == all.end() ? nullptr : &*found;
    }

    void add(RuleFile added) {
        replace(all, std::move(added.rules));
        replace(forms, std::move(added.forms));
        ofAll.reset();
    }

    CompiledRules& compiled() {
        if (ofAll == nullptr) {
            ofAll = std::make_unique<CompiledRules>(all);
        }
        return *ofAll;
    }

    template <typename Row>
    static void replace(std::vector<Row>& rows, std::vector<Row> added) {
        for (Row& row : added) {
            std::erase_if(rows, [&](const Row& old) { return old.id == row.id; });
            rows.push_back(std::move(row));
        }
    }
};

RuleSet::RuleSet() : rules(std::make_unique<Rules>()) {
    for (const ShippedRules& shipped : shippedRules()) {
        rules->add(parseRules(std::string(shipped.text),
                              std::string(shipped.file) + " (shipped with korvel-report)",
                              PatternCheck::skip));
    }
}

RuleSet::RuleSet(RuleSet&&) noexcept = default;
RuleSet& RuleSet::operator=(RuleSet&&) noexcept = default;
RuleSet::~RuleSet() = default;

void RuleSet::add(const std::string& text, const std::string& file) {
    rules->add(parseRules(text, file));
}

std::string RuleSet::explain(std::string_view identifier) const {
    const Rule* const rule = rules->find(identifier);
    if (rule == nullptr) {
        const auto form = std::ranges::find(rules->forms, identifier, &FormRule::id);
        return form == rules->forms.end() ? std::string() : explanationOf(*form);
    }
    return rule->id + " (" + std::string(nameOf(rule->severity)) + ")\n" +  //
           "Meaning:  " + rule->meaning + "\n" +                            //
           "Advice:   " + rule->advice + "\n" +                             //
           "Finds:    " + subjectOf(*rule) + "\n" +                         //
           "Where:    " + joined(rule->where) + "\n" +                      //
           "File:     " + rule->file + "\n";
}

std::vector<std::string> RuleSet::identifiers() const {
    std::vector<std::string> identifiers;
    for (const Rule& rule : rules->all) {
        identifiers.push_back(rule.id);
    }
    for (const FormRule& form : rules->forms) {
        identifiers.push_back(form.id);
    }
    return identifiers;
}

std::shared_ptr<const LogForms> RuleSet::logForms() const {
    auto forms = std::make_shared<LogForms>();
    for (const FormRule& form : rules->forms) {
        forms->add(form.pattern, form.levels);
    }
    return forms;
}

void RuleSet::apply(Package& package, std::size_t maxLine) const {
    rules->compiled().apply(package, false, maxLine);
}

bool RuleSet::names(const Value& value) const {
    return rules->compiled().names(value);
}

}  // namespace Report
