#include "PartTable.hpp"

#include <algorithm>
#include <array>

namespace Report {
namespace {

constexpr std::array partTable{
    KnownPart{Collector::fuse, "tracing_on", "dinf", Scope::dispatcher},
    KnownPart{Collector::fuse, "dispatcherCpu", "dstat", Scope::dispatcher},
    KnownPart{Collector::fuse, "dmaStats", "dstat", Scope::dispatcher},
    KnownPart{Collector::fuse, "fpBridgeStats", "dstat", Scope::iwfAlone},
    KnownPart{Collector::fuse, "HistoryLog", "dlog", Scope::board},
    KnownPart{Collector::mmi, "SocketSvcInfo", "dinf", Scope::dispatcher},
    KnownPart{Collector::mmi, "SocketSvcCounters", "dstat", Scope::dispatcher},
    KnownPart{Collector::mmi, "ReassemblyCounters", "dstat", Scope::dispatcher},
    KnownPart{Collector::mmi, "HeapStats", "dstat", Scope::dispatcher},
    KnownPart{Collector::ti, "netfp_proxy", "proxy", Scope::board},
    KnownPart{Collector::ti, "netfp_server", "server", Scope::board},
    KnownPart{Collector::ti, "netfp_master", "master", Scope::board},
    KnownPart{Collector::ti, "resmgr_server", "resmgr", Scope::board},
    KnownPart{Collector::ti, "syslib_sm_log", "slog", Scope::board},
};

constexpr std::array<std::string_view, 8> narrowKeywords{"dlog",   "dinf",   "dstat",  "proxy",
                                                         "server", "master", "resmgr", "slog"};

struct WideKeyword {
    std::string_view word;
    std::size_t first;  // in the table of narrow keywords
    std::size_t count;
};

constexpr std::array wideKeywords{WideKeyword{"dall", 0, 3}, WideKeyword{"netfp", 3, 5},
                                  WideKeyword{"all", 0, 8}};

struct Folder {
    Collector collector;
    std::string_view name;
};

constexpr std::array folders{
    Folder{Collector::fuse, "fuse"},
    Folder{Collector::mmi, "mmi"},
    Folder{Collector::ti, "ti"},
    Folder{Collector::archive, "archive"},
    Folder{Collector::archive, "archive.1"},
    Folder{Collector::archive, "archive.2"},
    Folder{Collector::archive, "archive.3"},
    Folder{Collector::linuxLogs, "linux"},
};

constexpr std::string_view postMortemName = "netfp_logs_post_mortem";

// The steps in which one run writes its files. Each has room for all parts of its collector.
constexpr int stepSize = 100;
constexpr int dumpStep = 0;
constexpr int fuseStep = 1;
constexpr int mmiStep = 2;
constexpr int syslibStep = 3;
constexpr int postMortemStep = 4;
constexpr int linuxStep = 5;

std::string_view cutFirstComponent(std::string_view& path) {
    const std::size_t slash = path.find('/');
    const std::string_view first = path.substr(0, slash);
    path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
    return first;
}

bool fits(const KnownPart& part, const PartPlace& place) {
    const bool dispatcherFits = part.scope == Scope::board        ? place.dispatcher == Dispatcher::none
                                : part.scope == Scope::dispatcher ? place.dispatcher != Dispatcher::none
                                                                  : place.dispatcher == Dispatcher::iwf;
    return part.collector == place.collector && part.leaf == place.leaf && dispatcherFits;
}

int stepOf(const PartPlace& place) {
    switch (place.collector) {
        case Collector::fuse:
            return fuseStep;
        case Collector::mmi:
            return mmiStep;
        case Collector::ti:
            return place.isDump() ? dumpStep : syslibStep;
        case Collector::postMortem:
            return postMortemStep;
        default:
            return linuxStep;
    }
}

}  // namespace

std::span<const KnownPart> knownParts() {
    return partTable;
}

std::string nameOf(const KnownPart& part, Dispatcher dispatcher) {
    std::string name(folderOf(part.collector));
    if (part.scope != Scope::board) {
        name.append("/").append(nameOf(dispatcher));
    }
    return name.append("/").append(part.leaf);
}

std::string_view folderOf(Collector collector) {
    const auto* const row = std::ranges::find(folders, collector, &Folder::collector);
    return row == folders.end() ? std::string_view() : row->name;
}

std::span<const std::string_view> narrowKeywordsOf(std::string_view keyword) {
    const std::span<const std::string_view> all(narrowKeywords);
    const auto* const narrow = std::ranges::find(narrowKeywords, keyword);
    if (narrow != narrowKeywords.end()) {
        return all.subspan(static_cast<std::size_t>(narrow - narrowKeywords.begin()), 1);
    }
    const auto* const wide = std::ranges::find(wideKeywords, keyword, &WideKeyword::word);
    return wide == wideKeywords.end() ? all.subspan(0, 0) : all.subspan(wide->first, wide->count);
}

std::string coverageKeywordList() {
    std::string list;
    for (const std::string_view word : narrowKeywords) {
        list.append(word).append(" ");
    }
    for (const WideKeyword& wide : wideKeywords) {
        list.append(wide.word).append(" ");
    }
    list.pop_back();
    return list;
}

PartPlace placeOf(std::string_view name) {
    PartPlace place;
    std::string_view rest = name;
    const std::string_view top = cutFirstComponent(rest);
    const auto* const folder = std::ranges::find(folders, top, &Folder::name);
    if (rest.empty() || folder == folders.end()) {
        place.collector = name == postMortemName ? Collector::postMortem : Collector::unknown;
        place.leaf = name;
        return place;
    }
    place.collector = folder->collector;
    const auto* const dispatcher =
        std::find(std::begin(dispatcherNames) + 1, std::end(dispatcherNames), rest.substr(0, rest.find('/')));
    if (dispatcher != std::end(dispatcherNames) && rest.find('/') != std::string_view::npos) {
        place.dispatcher = static_cast<Dispatcher>(dispatcher - std::begin(dispatcherNames));
        cutFirstComponent(rest);
    }
    place.leaf = rest;
    const auto* const known =
        std::ranges::find_if(partTable, [&](const KnownPart& part) { return fits(part, place); });
    place.known = known == partTable.end() ? nullptr : known;
    return place;
}

int writeOrderOf(const PartPlace& place) {
    if (place.collector == Collector::archive || place.collector == Collector::unknown) {
        return -1;
    }
    const int step = stepOf(place) * stepSize;
    if (place.known == nullptr) {
        return step;
    }
    // A part of the board, the history log, comes after those of both dispatchers.
    const int row = static_cast<int>(place.known - partTable.data());
    const int dispatcher = place.dispatcher == Dispatcher::none ? 2 : static_cast<int>(place.dispatcher) - 1;
    return step + dispatcher * static_cast<int>(partTable.size()) + row;
}

}  // namespace Report
