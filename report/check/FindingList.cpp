#include "FindingList.hpp"

#include <algorithm>

namespace Report {
namespace {

constexpr std::size_t maximumEvidence = 3;
constexpr std::size_t longestEvidence = 500;  // bytes

void addEvidence(Finding& finding, std::string_view source, std::string_view text) {
    if (finding.evidence.size() < maximumEvidence) {
        finding.evidence.push_back({std::string(source), std::string(text.substr(0, longestEvidence))});
    }
}

}  // namespace

void FindingList::add(std::size_t rule, std::string_view part, std::string_view source,
                      std::string_view text) {
    auto place = places[rule].find(part);
    if (place == places[rule].end()) {
        place = places[rule].emplace(part, findings.size()).first;
        Finding& finding = findings.emplace_back();
        finding.rule = rules[rule].id;
        finding.severity = rules[rule].severity;
        finding.part = part;
        finding.meaning = rules[rule].meaning;
        finding.advice = rules[rule].advice;
        finding.count = 0;
    }
    last = place->second;
    ++findings[last].count;
    if (!text.empty()) {
        addEvidence(findings[last], source, text);
    }
}

void FindingList::support(const Evidence& evidence) {
    addEvidence(findings[last], evidence.source, evidence.text);
}

std::vector<Finding> FindingList::take() {
    std::ranges::stable_sort(findings, {}, &Finding::severity);
    return std::move(findings);
}

}  // namespace Report
