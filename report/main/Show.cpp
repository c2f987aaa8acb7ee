#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "Message.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Renderers.hpp"

namespace Report {
namespace {

/// The choice of the user does not fit a package. what() says why.
class ChoiceError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::optional<Time> timeOf(const std::optional<Moment>& moment, const Package& package) {
    if (!moment) {
        return std::nullopt;
    }
    const std::optional<Time> time = moment->resolve(package.time);
    if (!time) {
        throw ChoiceError("its time is unknown, so --since and --until need a date");
    }
    return time;
}

ShowChoice choiceFor(const Package& package, const Arguments& arguments) {
    if (arguments.part && !hasChosenPart(package, *arguments.part)) {
        throw ChoiceError("no part is named '" + *arguments.part +
                          "'; 'korvel-report check PACKAGE' lists the parts");
    }
    return {.part = arguments.part,
            .logsOnly = arguments.logsOnly,
            .since = timeOf(arguments.since, package),
            .until = timeOf(arguments.until, package),
            .grep = arguments.grep,
            .maxLine = arguments.limits.maxLine};
}

}  // namespace

int show(const Arguments& arguments) {
    const RuleSet rules = readRules(arguments);
    Output output({arguments.output, arguments.pager});
    const int status = useEach(arguments, {.forms = rules.logForms()}, [&](Package& package) {
        try {
            const ShowChoice choice = choiceFor(package, arguments);
            rules.apply(package, choice.maxLine);
            output.write([&](std::ostream& out, const TextStyle& style) {
                renderShow(out, package, rules, choice, style);
            });
            return 0;
        } catch (const ChoiceError& error) {
            complain(package.source + ": " + error.what());
            return exitTrouble;
        }
    });
    output.finish();
    return status;
}

}  // namespace Report
