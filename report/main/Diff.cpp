#include <optional>
#include <ostream>
#include <string>

#include "Commands.hpp"
#include "Difference.hpp"
#include "ExitStatus.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Renderers.hpp"

namespace Report {

int diff(const Arguments& arguments) {
    const Reading reading{.forms = readRules(arguments).logForms()};
    std::string reason;
    const std::optional<Package> before = readJudged(arguments.files[0], arguments, reading, reason);
    const std::optional<Package> after = readJudged(arguments.files[1], arguments, reading, reason);
    if (!before || !after) {
        return exitTroubleOfDiff;
    }
    const Difference difference = compare(*before, *after, arguments.limits.maxLine);
    Output output({arguments.output, arguments.pager});
    output.write(
        [&](std::ostream& out, const TextStyle& style) { renderDifference(out, difference, style); });
    output.finish();
    return exitStatusOf(difference);
}

}  // namespace Report
