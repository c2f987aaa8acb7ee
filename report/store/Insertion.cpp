#include "Insertion.hpp"

#include <chrono>
#include <cstddef>

#include "Utf8.hpp"

namespace Report {

Insertion& Insertion::add(std::int64_t number) {
    row.bind(++column, number);
    return *this;
}

Insertion& Insertion::add(double number) {
    row.bind(++column, number);
    return *this;
}

Insertion& Insertion::add(std::string_view text) {
    std::string& kept = texts.at(static_cast<std::size_t>(column));
    if (const std::string_view valid = validUtf8(text, kept); valid.data() != kept.data()) {
        kept = valid;
    }
    row.bindNoCopy(++column, kept);
    return *this;
}

Insertion& Insertion::add(const std::optional<Time>& time) {
    return time
               ? add(std::int64_t{std::chrono::floor<std::chrono::seconds>(*time).time_since_epoch().count()})
               : addNull();
}

Insertion& Insertion::addNull() {
    row.bind(++column);
    return *this;
}

int Insertion::insert() {
    const int inserted = row.exec();
    row.reset();
    column = 0;
    return inserted;
}

}  // namespace Report
