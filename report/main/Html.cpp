#include <ostream>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Renderers.hpp"

namespace Report {

int html(const Arguments& arguments) {
    const RuleSet rules = readRules(arguments);
    const Packages packages = readAll(arguments, rules);
    Output output({arguments.output});
    if (!packages.list.empty()) {
        output.write([&](std::ostream& out, const TextStyle&) {
            renderHtml(out, packages.list, rules, arguments.limits.maxLine);
        });
    }
    output.finish();
    return packages.unreadable.empty() ? 0 : exitTrouble;
}

}  // namespace Report
