#include "BoardSeries.hpp"

namespace Report {

BoardSeries::Series& BoardSeries::add(const SeriesKey& key, std::int64_t identifier) {
    Entry& entry = entries.emplace_back();
    entry.part = key.part;
    entry.title = key.title;
    entry.name = key.name;
    entry.occurrence = key.occurrence;
    entry.series.identifier = identifier;
    return entry.series;
}

BoardSeries::Series* BoardSeries::find(const SeriesKey& key) {
    if (next == entries.size() || entries[next].key() != key) {
        fillIndex();
        const auto found = index.find(key);
        if (found == index.end()) {
            return nullptr;
        }
        next = found->second;
    }
    return &entries[next++].series;
}

void BoardSeries::fillIndex() {
    for (; indexed < entries.size(); ++indexed) {
        index.emplace(entries[indexed].key(), indexed);
    }
}

}  // namespace Report
