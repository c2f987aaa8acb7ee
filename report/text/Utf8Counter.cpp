#include "Utf8Counter.hpp"

#include <cstring>

#include "Utf8.hpp"

namespace Report {
namespace {

constexpr std::size_t longestCharacter = 4;

bool mayBeginCharacter(char byte) {
    return static_cast<unsigned char>(byte) >= 0xC0;
}

/// The length of ASCII text at the start of `bytes`, rounded down to whole words.
std::size_t asciiPrefix(std::string_view bytes) {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= bytes.size(); length += sizeof word) {
        std::memcpy(&word, bytes.data() + length, sizeof word);
        if ((word & highBits) != 0) {
            break;
        }
    }
    return length;
}

}  // namespace

void Utf8Counter::add(std::string_view bytes) {
    while (!open.empty() && !bytes.empty()) {
        open += bytes.front();
        bytes.remove_prefix(1);
        open.erase(0, scan(open));
    }
    bytes.remove_prefix(scan(bytes));
    open += bytes;
}

void Utf8Counter::finish() {
    while (!open.empty()) {
        ++invalidBytes;
        const std::string rest = open.substr(1);
        open.clear();
        add(rest);
    }
}

/// Counts in `bytes` up to a character at its end that may be incomplete. Returns how many bytes that are.
std::size_t Utf8Counter::scan(std::string_view bytes) {
    std::size_t done = 0;
    for (;;) {
        done += asciiPrefix(bytes.substr(done));
        const std::string_view rest = bytes.substr(done);
        const std::size_t length = firstCharacter(rest).length;
        if (rest.empty() ||
            (length == 0 && rest.size() < longestCharacter && mayBeginCharacter(rest.front()))) {
            return done;
        }
        invalidBytes += length == 0 ? 1 : 0;
        done += length == 0 ? 1 : length;
    }
}

}  // namespace Report
