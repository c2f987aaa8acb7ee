#include "VerdictText.hpp"

#include <cstddef>

#include "PartGroups.hpp"
#include "SafeText.hpp"
#include "Words.hpp"

namespace Report {
namespace {

std::string troubledText(const Package& package) {
    const std::size_t expected = countExpected(package);
    const std::size_t troubled = countTroubled(package);
    if (troubled == 0) {
        return expected == 0 ? "No part was expected." : "Every expected part is present.";
    }
    return std::to_string(troubled) + " of " + counted(expected, "expected part") +
           (troubled == 1 ? " is not as it should be." : " are not as they should be.");
}

}  // namespace

std::string meaningOf(const Package& package) {
    const std::string reason = forTerminal(package.end.reason);
    switch (package.verdict) {
        case Verdict::whole:
            return troubledText(package);
        case Verdict::incomplete:
            return countTroubled(package) == 0
                       ? "Every expected part is present, but a package inside is cut or altered."
                       : troubledText(package) + " Parts that are present can be used.";
        case Verdict::notFullyRead:
            return "A limit of the reading was reached. Nothing is known of the rest.";
        case Verdict::cut:
            return "The file ends early: " + reason + ". Parts that are present can be used.";
        case Verdict::altered:
            return "The file is not as it was made: " + reason + ". Do not rely on its contents.";
        case Verdict::unreadable:
            break;
    }
    return "The file cannot be read.";
}

}  // namespace Report
