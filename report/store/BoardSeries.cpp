#include "BoardSeries.hpp"

#include <string>

namespace Report {

BoardSeries::Series& BoardSeries::add(const SeriesKey& key, std::int64_t identifier) {
    Entry& entry = entries.emplace_back();
    entry.name = {std::string(key.part), std::string(key.title), std::string(key.name), key.occurrence};
    entry.series.identifier = identifier;
    return entry.series;
}

BoardSeries::Series* BoardSeries::find(const SeriesKey& key) {
    if (next == entries.size() || entries[next].name.key() != key) {
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
        index.emplace(entries[indexed].name.key(), indexed);
    }
}

}  // namespace Report
