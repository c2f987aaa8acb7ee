#include "ExpectedParts.hpp"

#include <algorithm>
#include <set>

#include "RunReport.hpp"

namespace Report {
namespace {

struct Dispatchers {
    std::vector<Dispatcher> all;
    bool assumed = false;

    bool onlyIwf() const { return all == std::vector{Dispatcher::iwf}; }
};

bool hasDispatcher(const Package& package, Dispatcher dispatcher) {
    const std::string name(nameOf(dispatcher));
    return hasFolder(package, "fuse/" + name) || hasFolder(package, "mmi/" + name);
}

std::vector<Dispatcher> deployed(const Package& package) {
    const std::string* const deployment = package.sidecarState == SidecarState::used && package.sidecar
                                              ? package.sidecar->find("deployment")
                                              : nullptr;
    return deployment == nullptr ? std::vector<Dispatcher>() : dispatchersOf(*deployment);
}

Dispatchers dispatchersOf(const Package& package) {
    Dispatchers dispatchers;
    for (const Dispatcher dispatcher : {Dispatcher::iwf, Dispatcher::sfn}) {
        if (hasDispatcher(package, dispatcher)) {
            dispatchers.all.push_back(dispatcher);
        }
    }
    if (dispatchers.all.empty()) {
        dispatchers.all = deployed(package);
    }
    if (dispatchers.all.empty()) {
        dispatchers = {{Dispatcher::iwf, Dispatcher::sfn}, true};
    }
    return dispatchers;
}

std::set<std::string_view> keywordsOf(const Expectation& expectation) {
    std::set<std::string_view> keywords;
    for (const std::string& word : *expectation.keywords) {
        const auto narrow = narrowKeywordsOf(word);
        keywords.insert(narrow.begin(), narrow.end());
    }
    return keywords;
}

/// The known parts that are expected, for whatever dispatchers the board has.
std::vector<const KnownPart*> wantedParts(const Package& package, const Expectation& expectation) {
    std::vector<const KnownPart*> wanted;
    const auto keywords = expectation.keywords ? keywordsOf(expectation) : std::set<std::string_view>();
    for (const KnownPart& known : knownParts()) {
        if (expectation.keywords ? keywords.contains(known.keyword)
                                 : hasFolder(package, folderOf(known.collector))) {
            wanted.push_back(&known);
        }
    }
    return wanted;
}

bool needsLinuxLogs(const Package& package) {
    const bool collected = package.kind == Kind::trs || package.kind == Kind::sup ||
                           package.kind == Kind::postMortem || package.kind == Kind::shutdown;
    return collected && !hasFolder(package, folderOf(Collector::linuxLogs)) &&
           std::ranges::all_of(package.folders,
                               [](const std::string& folder) {  // the platform may choose another
                                   return placeOf(folder + "/file").collector != Collector::unknown;
                               });
}

}  // namespace

bool hasFolder(const Package& package, std::string_view folder) {
    const std::string start = std::string(folder) + "/";
    return package.folders.contains(folder) || std::ranges::any_of(package.parts, [&](const Part& part) {
               return !part.member.empty() && part.name.starts_with(start);
           });
}

std::vector<ExpectedPart> expectedParts(const Package& package, const Expectation& expectation) {
    std::vector<ExpectedPart> expected;
    const Dispatchers dispatchers = dispatchersOf(package);
    const bool anyDispatcher =
        hasDispatcher(package, Dispatcher::iwf) || hasDispatcher(package, Dispatcher::sfn);
    const bool sfnDeployed = std::ranges::count(deployed(package), Dispatcher::sfn) > 0;
    for (const KnownPart* const known : wantedParts(package, expectation)) {
        if (known->scope == Scope::board) {
            expected.push_back({nameOf(*known, Dispatcher::none)});
        } else if (known->scope == Scope::iwfAlone && (!dispatchers.onlyIwf() || sfnDeployed)) {
            continue;
        } else if (anyDispatcher || expectation.keywords) {
            for (const Dispatcher dispatcher : dispatchers.all) {
                expected.push_back({nameOf(*known, dispatcher), dispatchers.assumed});
            }
        }
    }
    if (needsLinuxLogs(package)) {
        expected.push_back({std::string(folderOf(Collector::linuxLogs))});
    }
    return expected;
}

bool countsIfThere(const Part& part, const PartPlace& place) {
    return !part.member.empty() &&
           (place.collector == Collector::archive || place.collector == Collector::postMortem ||
            place.collector == Collector::linuxLogs);
}

}  // namespace Report
