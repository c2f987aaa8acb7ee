#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "Message.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "RuleSet.hpp"

namespace Report {

namespace {

constexpr std::string_view label = "Meaning:";

/// The meaning in the explanation of a rule. A form of log lines has none.
std::string meaningIn(const std::string& explanation) {
    const std::size_t place = explanation.find(label);
    if (place == std::string::npos) {
        return "a form of log lines";
    }
    const std::size_t begin = explanation.find_first_not_of(' ', place + label.size());
    return explanation.substr(begin, explanation.find('\n', begin) - begin);
}

/// A line for each rule: its identifier and its meaning.
std::string listOf(const RuleSet& rules) {
    std::string list;
    const std::vector<std::string> names = rules.identifiers();
    const std::size_t width = std::ranges::max(names, {}, &std::string::size).size() + 2;
    for (const std::string& name : names) {
        list += name + std::string(width - name.size(), ' ') + meaningIn(rules.explain(name)) + "\n";
    }
    return list;
}

}  // namespace

int explain(const Arguments& arguments, const std::string& rule) {
    const RuleSet rules = readRules(arguments);
    const std::string text = rule.empty() ? listOf(rules) : rules.explain(rule);
    if (text.empty()) {
        std::string known = "no rule is named '" + rule + "'; the rules are:";
        for (const std::string& name : rules.identifiers()) {
            known += "\n  " + name;
        }
        complain(known);
        return exitTrouble;
    }
    Output output({arguments.output});
    output.write([&](std::ostream& out, const TextStyle&) { out << text; });
    output.finish();
    return 0;
}

}  // namespace Report
