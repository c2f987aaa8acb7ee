#include "ValueTables.hpp"

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <tuple>
#include <utility>
#include <variant>

namespace Report {
namespace {

constexpr std::array<std::string_view, 2> dispatcherNames{"iwf", "sfn"};

/// A part's name without the folder of its dispatcher.
struct Place {
    std::string part;
    std::optional<std::size_t> dispatcher;
};

Place placeOf(std::string_view name) {
    for (std::size_t dispatcher = 0; dispatcher < dispatcherNames.size(); ++dispatcher) {
        const std::string folder = std::string("/").append(dispatcherNames.at(dispatcher)).append("/");
        const std::size_t at = name.find(folder);
        if (at != std::string_view::npos) {
            return {std::string(name.substr(0, at + 1)).append(name.substr(at + folder.size())), dispatcher};
        }
    }
    return {std::string(name), std::nullopt};
}

bool isSameWord(std::string_view text, std::string_view lowerCase) {
    return std::ranges::equal(
        text, lowerCase, [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
}

/// The titles of both dispatchers differ only in their names: "iwf: heap statistics".
std::string withoutDispatcher(std::string_view title, std::string_view dispatcher) {
    if (title.size() <= dispatcher.size() || !isSameWord(title.substr(0, dispatcher.size()), dispatcher)) {
        return std::string(title);
    }
    const std::size_t rest = title.find_first_not_of(": ", dispatcher.size());
    const bool isWord = rest != dispatcher.size();
    return std::string(isWord ? title.substr(std::min(rest, title.size())) : title);
}

bool isZero(const Value& value) {
    return std::visit(
        [](auto number) {
            if constexpr (std::is_same_v<decltype(number), std::monostate>) {
                return false;
            } else {
                return number == decltype(number){};
            }
        },
        value.number);
}

/// Collects values into tables.
class Tables {
public:
    void add(const Value& value, bool named) {
        const Place place = placeOf(value.part);
        const std::size_t column = place.dispatcher.value_or(0);
        const std::string title =
            place.dispatcher ? withoutDispatcher(value.title, dispatcherNames.at(column)) : value.title;
        ValueTable& table = tableOf(place, title);
        ValueRow& row = rowOf(table, value, column);
        row.cells.at(column) = &value;
        row.named = row.named || named;
        row.zero = row.zero && isZero(value);
    }

    std::vector<ValueTable> take() {
        for (ValueTable& table : tables) {
            std::stable_sort(table.rows.begin(), table.rows.end(), [](const ValueRow& a, const ValueRow& b) {
                return std::tuple(!a.named, a.zero) < std::tuple(!b.named, b.zero);
            });
        }
        std::stable_sort(tables.begin(), tables.end(),
                         [](const ValueTable& a, const ValueTable& b) { return a.part < b.part; });
        return std::move(tables);
    }

private:
    ValueTable& tableOf(const Place& place, const std::string& title) {
        const auto [known, added] =
            tableNumbers.emplace(std::tuple(place.part, title, place.dispatcher.has_value()), tables.size());
        if (added) {
            tables.push_back({place.part, title, {}, {}});
        }
        ValueTable& table = tables[known->second];
        if (place.dispatcher) {
            table.dispatchers.at(*place.dispatcher) = true;
        }
        return table;
    }

    /// The row with room for the value: a package can have two parts of one name.
    ValueRow& rowOf(ValueTable& table, const Value& value, std::size_t column) {
        const auto tableNumber = static_cast<std::size_t>(&table - tables.data());
        const auto [known, added] =
            rowNumbers.emplace(std::tuple(tableNumber, value.name, value.occurrence), table.rows.size());
        if (!added && table.rows[known->second].cells.at(column) == nullptr) {
            return table.rows[known->second];
        }
        known->second = table.rows.size();
        return table.rows.emplace_back(ValueRow{value.name, value.occurrence, {}, false, true});
    }

    std::vector<ValueTable> tables;
    std::map<std::tuple<std::string, std::string, bool>, std::size_t> tableNumbers;
    std::map<std::tuple<std::size_t, std::string, std::size_t>, std::size_t> rowNumbers;
};

}  // namespace

std::vector<std::size_t> columnsOf(const ValueTable& table) {
    if (!table.dispatchers[0] && !table.dispatchers[1]) {
        return {0};
    }
    std::vector<std::size_t> columns;
    for (std::size_t dispatcher = 0; dispatcher < table.dispatchers.size(); ++dispatcher) {
        if (table.dispatchers.at(dispatcher)) {
            columns.push_back(dispatcher);
        }
    }
    return columns;
}

std::string_view dispatcherOf(const ValueTable& table, std::size_t column) {
    return table.dispatchers.at(column) ? dispatcherNames.at(column) : std::string_view{};
}

std::string_view titleOf(const ValueTable& table) {
    std::string_view title = table.title;
    title.remove_suffix(title.ends_with(':') ? 1 : 0);
    return title;
}

std::vector<ValueTable> valueTables(const Package& package, const std::function<bool(const Value&)>& named,
                                    const std::function<bool(std::string_view)>& selected) {
    Tables tables;
    for (const Value& value : package.values) {
        if (selected(value.part)) {
            tables.add(value, named(value));
        }
    }
    return tables.take();
}

}  // namespace Report
