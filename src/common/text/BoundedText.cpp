#include "BoundedText.hpp"

#include <algorithm>

namespace Korvel {

bool appendWithin(std::size_t limit, std::string& text, std::string_view piece) {
    const std::size_t room = limit - text.size();
    const std::size_t wanted = text.size() + std::min(piece.size(), room);
    if (wanted > text.capacity()) {
        // A reallocation temporarily needs twice the memory, so a large text reserves the whole limit at
        // once.
        const std::size_t next = 2 * text.capacity();
        text.reserve(next > limit / 4 ? limit : std::max(wanted, next));
    }
    text.append(piece, 0, room);
    return piece.size() <= room;
}

}  // namespace Korvel
