#include "BoardSeries.hpp"

#include <algorithm>

namespace Report {

BoardSeries::Series& BoardSeries::add(const SeriesKey& key, std::int64_t identifier) {
    return entries.emplace_back(Entry{copyOf(key), {identifier, false}}).series;
}

BoardSeries::Series* BoardSeries::find(const SeriesKey& key) {
    if (next == entries.size() || entries[next].key != key) {
        fillIndex();
        const auto found = index.find(key);
        if (found == index.end()) {
            return nullptr;
        }
        next = found->second;
    }
    return &entries[next++].series;
}

/// Values of one part come one after the other, so most texts are those of the series before.
SeriesKey BoardSeries::copyOf(const SeriesKey& key) {
    const SeriesKey previous = entries.empty() ? SeriesKey() : entries.back().key;
    return {copyOf(key.part, previous.part), copyOf(key.title, previous.title), copyOf(key.name, {}),
            key.occurrence};
}

std::string_view BoardSeries::copyOf(std::string_view text, std::string_view previous) {
    if (text == previous) {
        return previous;
    }
    auto* const copy = static_cast<char*>(texts.allocate(text.size(), 1));
    std::ranges::copy(text, copy);
    return {copy, text.size()};
}

void BoardSeries::fillIndex() {
    for (; indexed < entries.size(); ++indexed) {
        index.emplace(entries[indexed].key, indexed);
    }
}

}  // namespace Report
