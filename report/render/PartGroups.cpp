#include "PartGroups.hpp"

#include <algorithm>
#include <cstddef>
#include <map>
#include <tuple>
#include <utility>

#include "SafeText.hpp"

namespace Report {
namespace {

bool isTroubled(const Part& part) {
    return part.state != State::present && part.state != State::notRead;
}

using Reason = std::tuple<State, std::string, std::optional<Certainty>,
                          std::vector<std::pair<std::string, std::string>>>;

/// The cause without the last component of the part's name: "did not answer" instead of "did not answer
/// HeapStats".
std::string generalCause(const Part& part) {
    const std::string word = " " + part.name.substr(part.name.rfind('/') + 1);
    std::string cause = part.cause;
    const std::size_t at = cause.find(word);
    const std::size_t end = at + word.size();
    if (at != std::string::npos && (end == cause.size() || cause[end] == ' ' || cause[end] == ',')) {
        cause.erase(at, word.size());
    }
    return cause;
}

Reason reasonOf(const Part& part) {
    Reason reason{part.state, generalCause(part), part.certainty, {}};
    for (const Evidence& evidence : part.evidence) {
        std::get<3>(reason).emplace_back(evidence.source, evidence.text);
    }
    return reason;
}

}  // namespace

std::vector<PartGroup> troubledParts(const Package& package, bool expected) {
    std::vector<PartGroup> groups;
    std::map<Reason, std::size_t> known;
    for (const Part& part : package.parts) {
        if (part.expected != expected || !isTroubled(part)) {
            continue;
        }
        const auto [row, added] = known.emplace(reasonOf(part), groups.size());
        if (added) {
            groups.push_back({&part, generalCause(part), {}});
        }
        groups[row->second].names.push_back(forTerminal(part.name));
    }
    for (PartGroup& group : groups) {
        group.cause = group.names.size() == 1 ? group.first->cause : group.cause;
    }
    std::stable_sort(groups.begin(), groups.end(),
                     [](const PartGroup& a, const PartGroup& b) { return a.first->state < b.first->state; });
    return groups;
}

std::size_t countExpected(const Package& package) {
    return static_cast<std::size_t>(std::count_if(package.parts.begin(), package.parts.end(),
                                                  [](const Part& part) { return part.expected; }));
}

std::size_t countTroubled(const Package& package, bool expected) {
    return static_cast<std::size_t>(
        std::count_if(package.parts.begin(), package.parts.end(),
                      [&](const Part& part) { return part.expected == expected && isTroubled(part); }));
}

}  // namespace Report
