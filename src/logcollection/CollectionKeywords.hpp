#pragma once

#include <array>
#include <map>
#include <span>
#include <string>
#include <string_view>

namespace Korvel {

/// Output modes of a collection; bits of one mask.
namespace OutputMode {
constexpr unsigned print = 1;
constexpr unsigned dump = 2;
constexpr unsigned package = 4;
constexpr unsigned withoutTimestamp = 8;
constexpr unsigned supervisor = 16;
constexpr unsigned postMortem = 32;
constexpr unsigned shutdown = 64;
}  // namespace OutputMode

/// The logs to collect: a mask for each collector id, in the order in which the collectors run.
using CoverageMasks = std::map<std::string, unsigned>;

/// The effect of a keyword on one collector's mask.
struct Coverage {
    enum class Effect { none, assign, merge };
    Effect effect = Effect::none;
    unsigned bits = 0;
};

struct CollectionKeyword {
    std::string_view word;
    unsigned output = 0;  ///< merged into the output-mode mask
    Coverage ti;
    Coverage mmi;
    Coverage fuse;
    std::string_view help;  ///< line of the help text; empty for undocumented keywords
};

/// In the order of the help text.
std::span<const CollectionKeyword> outputKeywords();
std::span<const CollectionKeyword> coverageKeywords();

/// Returns the keyword that equals `word`, or null.
const CollectionKeyword* findCollectionKeyword(std::string_view word);

/// Masks of all collectors that select nothing, or everything.
CoverageMasks noCoverage();
CoverageMasks fullCoverage();

void applyCoverage(const CollectionKeyword& keyword, CoverageMasks& masks);

}  // namespace Korvel
