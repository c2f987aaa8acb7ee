#include "TextCounts.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

namespace Report {

TextCounts::TextCounts(std::vector<std::uint64_t> hashes) {
    std::ranges::sort(hashes);
    for (const std::uint64_t hash : hashes) {
        if (rows.empty() || rows.back().hash != hash) {
            rows.push_back({hash});
        }
        ++rows.back().count;
    }
}

void TextCounts::raiseTo(const TextCounts& other) {
    std::vector<Row> all;
    all.reserve(rows.size() + other.rows.size());
    std::ranges::merge(rows, other.rows, std::back_inserter(all), {}, &Row::hash, &Row::hash);
    rows.clear();
    for (const Row& row : all) {
        if (!rows.empty() && rows.back().hash == row.hash) {
            rows.back().count = std::max(rows.back().count, row.count);
        } else {
            rows.push_back(row);
        }
    }
}

bool TextCounts::take(std::uint64_t hash) {
    const auto row = std::ranges::lower_bound(rows, hash, {}, &Row::hash);
    if (row == rows.end() || row->hash != hash || row->taken == row->count) {
        return false;
    }
    ++row->taken;
    row->mostTaken = std::max(row->mostTaken, row->taken);
    return true;
}

void TextCounts::putBack() {
    for (Row& row : rows) {
        row.taken = 0;
    }
}

std::size_t TextCounts::neverTaken() const {
    return std::accumulate(rows.begin(), rows.end(), std::size_t{0},
                           [](std::size_t sum, const Row& row) { return sum + (row.count - row.mostTaken); });
}

}  // namespace Report
