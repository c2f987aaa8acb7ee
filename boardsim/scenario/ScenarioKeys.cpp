#include "ScenarioKeys.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

#include "PeerFaults.hpp"
#include "UsageError.hpp"
#include "WholeNumber.hpp"

namespace Boardsim {
namespace {

using Values = std::vector<std::string>;

template <typename Number>
Number parseNumber(const std::string& text) {
    const std::optional<Number> number = wholeNumber<Number>(text);
    if (!number) {
        throw UsageError("not a number, or out of range: '" + text + "'");
    }
    return *number;
}

bool parseBoolean(const std::string& text) {
    if (text != "true" && text != "false") {
        throw UsageError("not true or false: '" + text + "'");
    }
    return text == "true";
}

/// The suffixes of a size, and the number of bits by which each shifts it.
constexpr std::array<std::pair<char, unsigned>, 2> sizeSuffixes{{{'M', 20}, {'K', 10}}};

/// Bytes out of "65536", "64K" or "64M".
std::uint64_t parseSize(const std::string& text) {
    const auto* suffix =
        std::ranges::find_if(sizeSuffixes, [&](const auto& each) { return text.ends_with(each.first); });
    const bool plain = suffix == sizeSuffixes.end();
    const unsigned shift = plain ? 0 : suffix->second;
    const auto count = parseNumber<std::uint64_t>(plain ? text : text.substr(0, text.size() - 1));
    if (count == 0 || count > (std::numeric_limits<std::uint64_t>::max() >> shift)) {
        throw UsageError("not a valid size: '" + text + "'");
    }
    return count << shift;
}

Values sizeOf(std::uint64_t bytes) {
    for (const auto& [suffix, shift] : sizeSuffixes) {
        if (((bytes >> shift) << shift) == bytes) {
            return {std::to_string(bytes >> shift) + suffix};
        }
    }
    return {std::to_string(bytes)};
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

const TrafficProfileName& findProfile(const std::string& name) {
    const auto names = trafficProfiles();
    const auto row = std::ranges::find(names, std::string_view(name), &TrafficProfileName::name);
    if (row == names.end()) {
        std::string valid;
        for (const TrafficProfileName& each : names) {
            valid += (valid.empty() ? "" : ", ") + std::string(each.name);
        }
        throw UsageError("unknown profile: '" + name + "'\nvalid profiles: " + valid);
    }
    return *row;
}

/// "leak", or "leak:60" with a head start.
void setTraffic(Traffic& traffic, const std::string& text) {
    const std::size_t colon = text.find(':');
    const TrafficProfile profile = findProfile(text.substr(0, colon)).profile;
    const int headStart = colon == std::string::npos ? 0 : parseNumber<int>(text.substr(colon + 1));
    if (headStart < 0 || headStart > Traffic::longestHeadStart) {
        throw UsageError("not from 0 to " + std::to_string(Traffic::longestHeadStart) + " seconds: '" + text +
                         "'");
    }
    traffic.profile = profile;
    traffic.headStart = headStart;
}

Values valueOf(const Traffic& traffic) {
    return traffic.isOn() ? Values{traffic.text()} : Values{};
}

Values seedOf(const Traffic& traffic) {
    return traffic.seed == Traffic{}.seed ? Values{} : Values{std::to_string(traffic.seed)};
}

Values valueOf(int number) {
    return number == 0 ? Values{} : Values{std::to_string(number)};
}
Values valueOf(bool set) {
    return set ? Values{"true"} : Values{};
}
Values valueOf(const std::string& text) {
    return text.empty() ? Values{} : Values{text};
}

constexpr std::string_view boardSection = "The board";
constexpr std::string_view peersSection = "Its peers";

constexpr std::array keys{
    ScenarioKey{
        "deployment", boardSection, KeyForm::single, "KIND",
        "iwf: only the IWF dispatcher; sfn-master: both dispatchers; sfn-antenna: only the SFN dispatcher",
        [](Scenario& s, const std::string& v) { s.deployment = parseDeployment(v); },
        [](const Scenario& s) { return nameOf(s.deployment); }},
    ScenarioKey{"secured", boardSection, KeyForm::toggle, "", "the board reports that it is secured",
                [](Scenario& s, const std::string& v) { s.secured = parseBoolean(v); },
                [](const Scenario& s) { return valueOf(s.secured); }},
    ScenarioKey{"secure-error", boardSection, KeyForm::single, "CODE",
                "the query whether the board is secured fails with CODE",
                [](Scenario& s, const std::string& v) { s.secureError = parseNumber<int>(v); },
                [](const Scenario& s) { return valueOf(s.secureError); }},
    ScenarioKey{
        "cma-error", boardSection, KeyForm::single, "CODE",
        "preparing address translation fails with CODE; affects mem_dump, desc_dump and the command devmem",
        [](Scenario& s, const std::string& v) { s.cmaError = parseNumber<int>(v); },
        [](const Scenario& s) { return valueOf(s.cmaError); }},
    ScenarioKey{"cmdline", boardSection, KeyForm::single, "TEXT", "the text of /proc/cmdline",
                [](Scenario& s, const std::string& v) { s.cmdline = v; },
                [](const Scenario& s) { return Values{s.cmdline}; }},
    ScenarioKey{"config", boardSection, KeyForm::single, "FILE",
                "installs FILE as /rom/private/fpdispatcher.conf",
                [](Scenario& s, const std::string& v) { s.config = v; },
                [](const Scenario& s) { return valueOf(s.config); }},
    ScenarioKey{"tmp-size", boardSection, KeyForm::single, "SIZE",
                "size of the disk at /tmp, in bytes, or with the suffix K or M",
                [](Scenario& s, const std::string& v) { s.tmpSize = parseSize(v); },
                [](const Scenario& s) { return sizeOf(s.tmpSize); }},
    ScenarioKey{"ffs-size", boardSection, KeyForm::single, "SIZE", "size of the disk at /ffs, likewise",
                [](Scenario& s, const std::string& v) { s.ffsSize = parseSize(v); },
                [](const Scenario& s) { return sizeOf(s.ffsSize); }},
    ScenarioKey{
        "bare", boardSection, KeyForm::toggle, "",
        "only the sandbox: no peers, no files under /rom; of the other options of a scenario, only --cmdline "
        "and the sizes apply",
        [](Scenario& s, const std::string& v) { s.bare = parseBoolean(v); },
        [](const Scenario& s) { return valueOf(s.bare); }},
    ScenarioKey{"without", peersSection, KeyForm::list, "PEER", "does not start PEER; repeatable",
                [](Scenario& s, const std::string& v) { s.without.insert(parsePeerName(v)); },
                [](const Scenario& s) { return Values(s.without.begin(), s.without.end()); }},
    ScenarioKey{"fault", peersSection, KeyForm::list, "PEER=FAULT[:N]",
                "gives PEER a fault (--help lists them); repeatable; of several faults of one table, the "
                "last applies",
                [](Scenario& s, const std::string& v) { s.faults.push_back(parsePeerFault(v)); },
                [](const Scenario& s) { return peerFaultTexts(s.faults); }},
    ScenarioKey{"full-logs", peersSection, KeyForm::toggle, "", "fills both shared-memory logs to capacity",
                [](Scenario& s, const std::string& v) { s.fullLogs = parseBoolean(v); },
                [](const Scenario& s) { return valueOf(s.fullLogs); }},
    ScenarioKey{"traffic", peersSection, KeyForm::single, "PROFILE[:SECONDS]",
                "counters and logs change with time, as PROFILE describes; SECONDS have passed when the "
                "board starts (default: none)",
                [](Scenario& s, const std::string& v) { setTraffic(s.traffic, v); },
                [](const Scenario& s) { return valueOf(s.traffic); }},
    ScenarioKey{"seed", peersSection, KeyForm::single, "N",
                "the random numbers of --traffic; with the same N, all values are the same (default: 1)",
                [](Scenario& s, const std::string& v) { s.traffic.seed = parseNumber<std::uint64_t>(v); },
                [](const Scenario& s) { return seedOf(s.traffic); }},
};

}  // namespace

std::span<const ScenarioKey> scenarioKeys() {
    return keys;
}

const ScenarioKey* findScenarioKey(std::string_view name) {
    const auto* row = std::ranges::find(keys, name, &ScenarioKey::name);
    return row == keys.end() ? nullptr : &*row;
}

}  // namespace Boardsim
