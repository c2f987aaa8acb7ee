#include "CollectionKeywords.hpp"

#include <algorithm>

#include "FuseLogCollector.hpp"
#include "MmiLogCollector.hpp"
#include "TiLogCollector.hpp"

namespace Korvel {
namespace {

using Fuse = FuseLogCollector;
using Mmi = MmiLogCollector;
using Ti = TiLogCollector;

constexpr Coverage none{};

constexpr Coverage assign(unsigned bits) {
    return {Coverage::Effect::assign, bits};
}

constexpr Coverage merge(unsigned bits) {
    return {Coverage::Effect::merge, bits};
}

constexpr CollectionKeyword output(std::string_view word, unsigned bits, std::string_view help) {
    return {.word = word, .output = bits, .ti = none, .mmi = none, .fuse = none, .help = help};
}

/// A package contains the files that the collectors dump.
constexpr unsigned packaged = OutputMode::dump | OutputMode::package;

constexpr std::array outputTable{
    output("print", OutputMode::print, "  print    (prints output on console)"),
    output("dump", OutputMode::dump, "  dump     (dumps output to files)"),
    output("pkg", packaged, "  pkg      (creates package)"),
    output("pkg-trs", packaged | OutputMode::withoutTimestamp,
           "  pkg-trs  (creates package without timestamp)"),
    output("pkg-sup", packaged | OutputMode::supervisor,
           "  pkg-sup  (creates package for ZELMO NetfpSupervisor Service)"),
    output("pkg-pm", packaged | OutputMode::postMortem, "  pkg-pm   (creates post mortem package)"),
    output("pkg-sdown", packaged | OutputMode::shutdown,
           "  pkg-sdown(creates package on system shutdown - has to be enabled in fpdispatcher.conf)"),
};

constexpr CollectionKeyword coverage(std::string_view word, Coverage ti, Coverage mmi, Coverage fuse,
                                     std::string_view help = {}) {
    return {.word = word, .output = 0, .ti = ti, .mmi = mmi, .fuse = fuse, .help = help};
}

constexpr std::array coverageTable{
    coverage("all", assign(Ti::allModes), assign(Mmi::allModes), assign(Fuse::allModes),
             "  all*     (default - all outputs)"),
    coverage("netfp", assign(Ti::allModes), none, none, "  netfp    (netfp_proxy + netpf_server output)"),
    coverage("proxy", merge(Ti::netfpProxy), none, none, "  proxy    (netfp_proxy output)"),
    coverage("server", merge(Ti::netfpServer), none, none, "  server   (netpf_server output)"),
    coverage("master", merge(Ti::netfpMaster), none, none),
    coverage("resmgr", merge(Ti::resmgrServer), none, none),
    coverage("slog", merge(Ti::syslibLog), none, none),
    coverage("dall", none, assign(Mmi::allModes), assign(Fuse::allModes),
             "  dall*    (all dispatcher outputs)"),
    coverage("dinf", none, merge(Mmi::information), merge(Fuse::information), "  dinf*    (dispatcher info)"),
    coverage("dstat", none, merge(Mmi::statistics), merge(Fuse::statistics),
             "  dstat*   (dispatcher statistics)"),
    coverage("dlog", none, none, merge(Fuse::dispatcherLog), "  dlog     (dispatcher logs)"),
};

void apply(const Coverage& coverage, unsigned& mask) {
    switch (coverage.effect) {
        case Coverage::Effect::none:
            return;
        case Coverage::Effect::assign:
            mask = coverage.bits;
            return;
        case Coverage::Effect::merge:
            mask |= coverage.bits;
            return;
    }
}

}  // namespace

std::span<const CollectionKeyword> outputKeywords() {
    return outputTable;
}

std::span<const CollectionKeyword> coverageKeywords() {
    return coverageTable;
}

const CollectionKeyword* findCollectionKeyword(std::string_view word) {
    for (const auto table : {outputKeywords(), coverageKeywords()}) {
        const auto row = std::find_if(table.begin(), table.end(),
                                      [&](const CollectionKeyword& keyword) { return keyword.word == word; });
        if (row != table.end()) {
            return &*row;
        }
    }
    return nullptr;
}

CoverageMasks noCoverage() {
    return {{Ti::id, 0}, {Mmi::id, 0}, {Fuse::id, 0}};
}

CoverageMasks fullCoverage() {
    return {{Ti::id, Ti::allModes}, {Mmi::id, Mmi::allModes}, {Fuse::id, Fuse::allModes}};
}

void applyCoverage(const CollectionKeyword& keyword, CoverageMasks& masks) {
    apply(keyword.ti, masks[Ti::id]);
    apply(keyword.mmi, masks[Mmi::id]);
    apply(keyword.fuse, masks[Fuse::id]);
}

}  // namespace Korvel
