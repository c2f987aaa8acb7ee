#include <algorithm>
#include <functional>

#include "Phrases.hpp"
#include "Pool.hpp"
#include "Sections.hpp"

namespace Report::Html {
namespace {

constexpr double nearlyAll = 0.9;

double shareInUse(const Pool& pool) {
    return pool.all == 0 ? 0 : static_cast<double>(pool.used) / static_cast<double>(pool.all);
}

std::string permilleText(double share) {
    return std::to_string(static_cast<int>(std::clamp(share, 0.0, 1.0) * 1000));
}

std::string remarkOf(const Pool& pool) {
    std::vector<std::string> remarks;
    if (!pool.addsUp) {
        remarks.emplace_back("in use and free do not add up to all");
    } else if (pool.all > 0 && pool.free == 0) {
        remarks.emplace_back("nothing is free");
    } else if (shareInUse(pool) >= nearlyAll) {
        remarks.emplace_back("nearly all in use");
    }
    if (pool.highest) {
        remarks.push_back("highest use " + grouped(*pool.highest));
    }
    if (pool.lowest) {
        remarks.push_back("lowest free " + grouped(*pool.lowest));
    }
    std::string text;
    for (const std::string& remark : remarks) {
        text += (text.empty() ? "" : "; ") + remark;
    }
    return text;
}

/// The place of the line for the highest use in the bar. Empty if no value tells it.
std::string markOf(const Pool& pool) {
    if (pool.all == 0 || !pool.addsUp || (!pool.highest && !pool.lowest)) {
        return {};
    }
    const std::uint64_t highest = pool.highest ? *pool.highest : pool.all - std::min(pool.all, *pool.lowest);
    return permilleText(static_cast<double>(highest) / static_cast<double>(pool.all) - 0.006);
}

Fields poolRow(const Pool& pool) {
    const double share = shareInUse(pool);
    const bool full = pool.all > 0 && pool.free == 0;
    return Fields{}
        .set("name", shortened(pool.name, 200))
        .set("part", shortened(pool.part, 200))
        .set("percent",
             pool.all == 0 || !pool.addsUp ? std::string{} : std::to_string(static_cast<int>(share * 100)))
        .set("permille", permilleText(pool.addsUp ? share : 0))
        .set("tone", full                 ? "bad"
                     : share >= nearlyAll ? "warn"
                                          : "calm")
        .set("mark", markOf(pool))
        .set("used", grouped(pool.used))
        .set("free", grouped(pool.free))
        .set("all", grouped(pool.all))
        .set("remark", remarkOf(pool));
}

}  // namespace

void writePools(std::ostream& out, const View& view) {
    std::vector<Pool> pools = poolsOf(view->values);
    std::ranges::stable_sort(pools, std::ranges::greater{}, shareInUse);
    Rows rows;
    for (const Pool& pool : pools) {
        if (rows.size() < view.allowance.rows) {
            rows.push_back(poolRow(pool));
        }
    }
    if (rows.empty()) {
        return;
    }
    fill(out, "pools",
         Fields{}
             .set("id", view.id)
             .set("label", view.label)
             .set("level", levelText(view.level))
             .set("rows", std::move(rows)));
}

}  // namespace Report::Html
