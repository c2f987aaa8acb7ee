#include "Lookahead.hpp"

#include <utility>

namespace Report {

std::string_view Lookahead::peek(std::size_t count) {
    if (first.empty()) {
        first = source.next();
    }
    while (first.size() < count) {
        if (gathered.empty()) {
            gathered = first;
            first = gathered;  // the next piece invalidates the old one
        }
        const std::string_view piece = source.next();
        if (piece.empty()) {
            break;
        }
        gathered += piece;
        first = gathered;
    }
    return first;
}

std::string_view Lookahead::next() {
    return first.empty() ? source.next() : std::exchange(first, {});
}

}  // namespace Report
