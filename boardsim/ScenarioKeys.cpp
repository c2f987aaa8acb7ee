#include "ScenarioKeys.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

#include "PeerFaults.hpp"
#include "UsageError.hpp"

namespace {

using Values = std::vector<std::string>;

template <typename Number>
Number parseNumber(const std::string& text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) {
        throw UsageError("no number, or out of range: '" + text + "'");
    }
    return number;
}

bool parseTruth(const std::string& text) {
    if (text != "true" && text != "false") {
        throw UsageError("neither true nor false: '" + text + "'");
    }
    return text == "true";
}

/// Bytes out of "65536", "64K" or "64M".
std::uint64_t parseSize(const std::string& text) {
    constexpr std::array<std::pair<char, unsigned>, 2> suffixes{{{'K', 10}, {'M', 20}}};
    const auto* suffix =
        std::ranges::find_if(suffixes, [&](const auto& each) { return text.ends_with(each.first); });
    const bool plain = suffix == suffixes.end();
    const unsigned shift = plain ? 0 : suffix->second;
    const auto count = parseNumber<std::uint64_t>(plain ? text : text.substr(0, text.size() - 1));
    if (count == 0 || count > (std::numeric_limits<std::uint64_t>::max() >> shift)) {
        throw UsageError("no size of a disk: '" + text + "'");
    }
    return count << shift;
}

constexpr std::array deploymentNames{
    std::pair{std::string_view("iwf"), Deployment::iwf},
    std::pair{std::string_view("sfn-master"), Deployment::sfnMaster},
    std::pair{std::string_view("sfn-antenna"), Deployment::sfnAntenna},
};

Deployment parseDeployment(const std::string& text) {
    const auto* row = std::ranges::find(deploymentNames, std::string_view(text),
                                        &decltype(deploymentNames)::value_type::first);
    if (row == deploymentNames.end()) {
        throw UsageError("unknown deployment: '" + text + "'");
    }
    return row->second;
}

Values nameOf(Deployment deployment) {
    const auto* row =
        std::ranges::find(deploymentNames, deployment, &decltype(deploymentNames)::value_type::second);
    return {std::string(row->first)};
}

Values valueOf(int number) {
    return number == 0 ? Values{} : Values{std::to_string(number)};
}
Values valueOf(std::uint64_t number) {
    return {std::to_string(number)};
}
Values valueOf(bool truth) {
    return truth ? Values{"true"} : Values{};
}
Values valueOf(const std::string& text) {
    return text.empty() ? Values{} : Values{text};
}

constexpr std::array keys{
    ScenarioKey{"deployment", KeyForm::single, "KIND", "iwf, sfn-master (the default) or sfn-antenna",
                [](Scenario& s, const std::string& v) { s.deployment = parseDeployment(v); },
                [](const Scenario& s) { return nameOf(s.deployment); }},
    ScenarioKey{"secured", KeyForm::toggle, "", "the board says that it is secured",
                [](Scenario& s, const std::string& v) { s.secured = parseTruth(v); },
                [](const Scenario& s) { return valueOf(s.secured); }},
    ScenarioKey{"secure-error", KeyForm::single, "CODE", "asking whether it is secured fails with CODE",
                [](Scenario& s, const std::string& v) { s.secureError = parseNumber<int>(v); },
                [](const Scenario& s) { return valueOf(s.secureError); }},
    ScenarioKey{"cma-error", KeyForm::single, "CODE", "preparing for address translation fails with CODE",
                [](Scenario& s, const std::string& v) { s.cmaError = parseNumber<int>(v); },
                [](const Scenario& s) { return valueOf(s.cmaError); }},
    ScenarioKey{"cmdline", KeyForm::single, "TEXT", "kernel command line, as /proc/cmdline shows it",
                [](Scenario& s, const std::string& v) { s.cmdline = v; },
                [](const Scenario& s) { return Values{s.cmdline}; }},
    ScenarioKey{"config", KeyForm::single, "FILE", "installed as /rom/private/fpdispatcher.conf",
                [](Scenario& s, const std::string& v) { s.config = v; },
                [](const Scenario& s) { return valueOf(s.config); }},
    ScenarioKey{"tmp-size", KeyForm::single, "SIZE", "bytes of the disk under /tmp; K and M multiply (64M)",
                [](Scenario& s, const std::string& v) { s.tmpSize = parseSize(v); },
                [](const Scenario& s) { return valueOf(s.tmpSize); }},
    ScenarioKey{"ffs-size", KeyForm::single, "SIZE", "the same for the disk under /ffs (64M)",
                [](Scenario& s, const std::string& v) { s.ffsSize = parseSize(v); },
                [](const Scenario& s) { return valueOf(s.ffsSize); }},
    ScenarioKey{"without", KeyForm::list, "PEER", "PEER does not run (repeatable)",
                [](Scenario& s, const std::string& v) { s.without.insert(parsePeerName(v)); },
                [](const Scenario& s) { return Values(s.without.begin(), s.without.end()); }},
    ScenarioKey{"fault", KeyForm::list, "PEER=FAULT[:N]", "PEER misbehaves (repeatable)",
                [](Scenario& s, const std::string& v) { s.faults.push_back(parsePeerFault(v)); },
                [](const Scenario& s) { return peerFaultTexts(s.faults); }},
    ScenarioKey{"full-logs", KeyForm::toggle, "", "both shared-memory logs are filled to capacity",
                [](Scenario& s, const std::string& v) { s.fullLogs = parseTruth(v); },
                [](const Scenario& s) { return valueOf(s.fullLogs); }},
    ScenarioKey{"bare", KeyForm::toggle, "", "the sandbox alone: no peers, no files under /rom",
                [](Scenario& s, const std::string& v) { s.bare = parseTruth(v); },
                [](const Scenario& s) { return valueOf(s.bare); }},
};

}  // namespace

std::span<const ScenarioKey> scenarioKeys() {
    return keys;
}

const ScenarioKey* findScenarioKey(std::string_view name) {
    const auto* row = std::ranges::find(keys, name, &ScenarioKey::name);
    return row == keys.end() ? nullptr : &*row;
}
