#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory_resource>
#include <string_view>

#include "SeriesName.hpp"

namespace Report {

/// The series of one board that a store contains, while a package of the board is added.
class BoardSeries {
public:
    struct Series {
        std::int64_t identifier = 0;
        bool used = false;  ///< by a value of the package
    };

    /// Copies the key's texts. The result remains valid.
    Series& add(const SeriesKey& key, std::int64_t identifier);

    /// Null if the store does not contain it.
    Series* find(const SeriesKey& key);

private:
    struct Entry {
        SeriesKey key;
        Series series;
    };

    SeriesKey copyOf(const SeriesKey& key);
    std::string_view copyOf(std::string_view text, std::string_view previous);
    void fillIndex();

    std::pmr::monotonic_buffer_resource texts;
    std::deque<Entry> entries;
    std::size_t next = 0;  // behind the one that was found last: most packages have the values in this order
    std::map<SeriesKey, std::size_t> index;  // of the first `indexed` entries
    std::size_t indexed = 0;
};

}  // namespace Report
