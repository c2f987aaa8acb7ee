#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <tuple>

namespace Report {

/// What identifies a value of a board.
struct SeriesKey {
    std::string_view part;
    std::string_view title;
    std::string_view name;
    std::int64_t occurrence = 0;

    bool operator==(const SeriesKey&) const = default;
    bool operator<(const SeriesKey& other) const {
        return std::tie(part, title, name, occurrence) <
               std::tie(other.part, other.title, other.name, other.occurrence);
    }
};

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
        std::string part;
        std::string title;
        std::string name;
        std::int64_t occurrence = 0;
        Series series;

        SeriesKey key() const { return {part, title, name, occurrence}; }
    };

    void fillIndex();

    std::deque<Entry> entries;
    std::size_t next = 0;  // behind the one that was found last: most packages have the values in this order
    std::map<SeriesKey, std::size_t> index;  // of the first `indexed` entries
    std::size_t indexed = 0;
};

}  // namespace Report
