#include "BoundedText.hpp"

#include <algorithm>

namespace Korvel {

bool appendWithin(std::size_t limit, std::string& text, std::string_view piece) {
    const std::size_t room = limit - text.size();
    const std::size_t wanted = text.size() + std::min(piece.size(), room);
    if (wanted > text.capacity()) {
        // While a text moves it has its memory twice, so a large one moves no more: it gets all that it may
        // have.
        const std::size_t next = 2 * text.capacity();
        text.reserve(next > limit / 4 ? limit : std::max(wanted, next));
    }
    text.append(piece, 0, room);
    return piece.size() <= room;
}

}  // namespace Korvel
