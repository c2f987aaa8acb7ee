#include "BoundedText.hpp"

namespace Korvel {
namespace {

constexpr std::size_t usualSize = 1U << 16U;

}  // namespace

bool appendWithin(std::size_t limit, std::string& text, std::string_view piece) {
    // A text that doubles as it grows has three times its memory when it moves last, and leaves holes in the
    // heap. What is reserved and not used costs nothing.
    if (text.size() > usualSize && limit != noSizeLimit) {
        text.reserve(limit);
    }
    const std::size_t room = limit - text.size();
    text.append(piece, 0, room);
    return piece.size() <= room;
}

}  // namespace Korvel
