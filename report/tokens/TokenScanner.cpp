#include "TokenScanner.hpp"

#include <algorithm>

#include "ByteClass.hpp"
#include "Letters.hpp"
#include "Utf8.hpp"

namespace Report {

namespace {

/// As many bytes as one step can need, unless the text ends.
constexpr std::size_t window = 512;
constexpr std::size_t longestRun = 256;
static_assert(longestRun + farthestLook <= window && longestWord < longestRun);

constexpr std::string_view numberPrefix = "0x";
constexpr std::size_t longestGroup = 6;       ///< the first one of a grouped address
constexpr std::size_t fewestBareDigits = 12;  ///< of an address without separators

/// Whether the character that ends at `end` belongs to a word.
bool isWordBefore(std::string_view text, std::size_t end) {
    if (end == 0 || !isOf(text[end - 1], highByte)) {
        return end > 0 && isOf(text[end - 1], alnumByte | joinerByte);
    }
    std::size_t begin = end - 1;
    while (begin > 0 && end - begin < 4 && (static_cast<unsigned char>(text[begin]) & 0xc0U) == 0x80) {
        --begin;
    }
    const Utf8Character character = firstCharacter(text.substr(begin, end - begin));
    return character.length == end - begin && isWordCharacter(character.code);
}

}  // namespace

std::size_t TokenScanner::scan(std::span<char> whole, std::size_t from, bool last) {
    text = whole;
    view = {whole.data(), whole.size()};
    place = from;
    inWord = isWordBefore(view, from);
    broken = inWord;
    while (place < text.size() && (last || text.size() - place >= window)) {
        step();
    }
    if (last) {
        endWord();
        return text.size();
    }
    return inWord && !broken ? word : place;
}

void TokenScanner::step() {
    const unsigned kind = classOf(text[place]);
    if ((kind & alnumByte) != 0) {
        stepRun();
    } else if (kind == joinerByte) {
        joinWord(place + 1);
    } else if (kind == highByte) {
        stepHigh();
    } else if (kind == colonByte) {
        stepColon();
    } else {
        endWord();
        const char* const end = view.data() + view.size();
        const char* next = view.data() + place;
        do {
            ++next;
        } while (next < end && classOf(*next) == 0);
        place = static_cast<std::size_t>(next - view.data());
    }
}

/// Takes the text up to `end` as part of a word.
void TokenScanner::joinWord(std::size_t end) {
    if (!inWord) {
        inWord = true;
        broken = false;
        word = place;
    }
    place = end;
    broken = broken || place - word > longestWord;
}

void TokenScanner::endWord() {
    if (inWord && !broken) {
        handler.word(text.subspan(word, place - word));
    }
    inWord = false;
}

void TokenScanner::stepRun() {
    const char* const begin = view.data() + place;
    const char* const farthest = begin + std::min(text.size() - place, longestRun);
    const char* end = begin;
    unsigned kinds = 0;
    for (unsigned kind = classOf(*end); (kind & alnumByte) != 0; kind = end < farthest ? classOf(*end) : 0) {
        kinds |= kind;
        ++end;
    }
    Run run{place, place + static_cast<std::size_t>(end - begin)};
    bool hex = (kinds & ~static_cast<unsigned>(hexByte)) == 0;
    if (isPrefixed(run)) {
        run.begin += numberPrefix.size();
        hex = true;
    }
    if (!mayBeAddress(run, hex) || !takeAddressIn(run, hex)) {
        joinWord(run.end);
    }
}

/// Whether a run is a long hexadecimal number such as 0x001122334455.
bool TokenScanner::isPrefixed(Run run) const {
    const std::string_view text = view.substr(run.begin, run.size());
    return run.size() >= numberPrefix.size() + fewestBareDigits && text.starts_with(numberPrefix) &&
           isHex(view, {run.begin + numberPrefix.size(), run.end});
}

/// Whether an address may begin with the run, or with its last digits. Most words fail here.
bool TokenScanner::mayBeAddress(Run run, bool hex) const {
    const char next = byteAt(run.end);
    if (next == '.' && isOf(byteAt(run.end + 1), digitByte)) {
        return true;
    }
    const bool grouped = next == ':' || next == '-' || next == '.';
    return hex && ((grouped && run.size() <= longestGroup) || run.size() >= fewestBareDigits);
}

bool TokenScanner::takeAddressIn(Run run, bool hex) {
    const std::optional<FoundAddress> found = addressIn(run, hex);
    return found && takeAddress(*found);
}

bool TokenScanner::takeAddress(const FoundAddress& found) {
    const bool taken = handler.address(found, text.subspan(found.begin, found.end - found.begin));
    if (!taken && !found.certain) {
        return false;
    }
    place = found.end;
    inWord = true;
    broken = true;
    return true;
}

std::optional<FoundAddress> TokenScanner::addressIn(Run run, bool hex) const {
    const bool wholeRun = run.begin == 0 || !isOf(view[run.begin - 1], alnumByte);
    const bool number = view.substr(0, run.begin).ends_with(numberPrefix);
    if (hex && (wholeRun || number)) {
        const std::optional<FoundAddress> found =
            run.size() == bareIp6Digits ? bareIp6At(view, run) : groupsAt(run);
        if (found) {
            return found;
        }
    }
    const bool dotted = byteAt(run.end) == '.' && isOf(byteAt(run.end + 1), digitByte);
    return dotted ? ip4Behind(run.end) : std::nullopt;
}

/// An address that is written in groups of hexadecimal digits. An IPv6 address can begin like a hardware
/// address, and eight groups of two digits with ff:fe in the middle are an EUI-64.
std::optional<FoundAddress> TokenScanner::groupsAt(Run run) const {
    const std::optional<FoundAddress> hardware = hardwareAddressAt(view, run);
    const std::optional<FoundAddress> ip6 = canBeIp6(run) ? ip6At(view, run.begin) : std::nullopt;
    const bool eui64 = hardware && hardware->address.kind == AddressKind::eui64;
    return ip6 && !(eui64 && hardware->end >= ip6->end) ? ip6 : hardware;
}

/// Whether a second colon follows the first group, or the second one. Times without hours fail here.
bool TokenScanner::canBeIp6(Run run) const {
    if (run.size() > 4 || byteAt(run.end) != ':') {
        return false;
    }
    std::size_t second = run.end + 1;
    while (second - run.end <= 4 && isOf(byteAt(second), hexByte)) {
        ++second;
    }
    return byteAt(second) == ':';
}

/// The IPv4 address whose first number ends at `end`. Letters may be in front of the number.
std::optional<FoundAddress> TokenScanner::ip4Behind(std::size_t end) const {
    std::size_t begin = end;
    while (begin > 0 && end - begin < 4 && isOf(text[begin - 1], digitByte)) {
        --begin;
    }
    return begin < end ? ip4At(view, begin) : std::nullopt;
}

void TokenScanner::stepColon() {
    endWord();
    const std::optional<FoundAddress> found = byteAt(place + 1) == ':' ? ip6At(view, place) : std::nullopt;
    if (!found || !takeAddress(*found)) {
        ++place;
    }
}

void TokenScanner::stepHigh() {
    const Utf8Character character = firstCharacter(view.substr(place, 4));
    if (character.length > 0 && isWordCharacter(character.code)) {
        joinWord(place + character.length);
        return;
    }
    endWord();
    place += character.length > 0 ? character.length : 1;
}

}  // namespace Report
