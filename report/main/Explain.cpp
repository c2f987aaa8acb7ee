#include <ostream>
#include <string>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "Message.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "RuleSet.hpp"

namespace Report {

int explain(const Arguments& arguments, const std::string& rule) {
    const RuleSet rules = readRules(arguments);
    const std::string text = rules.explain(rule);
    if (text.empty()) {
        std::string known = "no rule is named " + rule + "; the rules are:";
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
