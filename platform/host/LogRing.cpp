#include "LogRing.hpp"

#include <algorithm>
#include <atomic>
#include <type_traits>

namespace HostBoard {
namespace {

constexpr std::uint64_t ringMagic = 0x31474F4C4D53564B;  // "KVSMLOG1"

// Byte counts have 64 bits and never wrap. The positions that callers see are these counts modulo 2^32 - 1,
// plus 1: they wrap from the highest 32-bit number to 1 and are never 0.
constexpr std::uint64_t positionCount = 0xFFFFFFFF;

// A process that dies during a store must not leave a half-written head or tail.
static_assert(std::atomic_ref<std::uint64_t>::is_always_lock_free);

std::uint64_t load(std::uint64_t& field) {
    return std::atomic_ref(field).load();
}

/// An exchange instead of a store, because it is a full barrier: no access moves across it in either
/// direction. Recovery after the death of a process in an operation depends on this order.
void store(std::uint64_t& field, std::uint64_t value) {
    std::atomic_ref(field).exchange(value);
}

unsigned positionAt(std::uint64_t written) {
    return static_cast<unsigned>(written % positionCount + 1);
}

}  // namespace

LogRing::LogRing(std::span<std::byte> memory)
    : header(*reinterpret_cast<Header*>(memory.data())),
      text(reinterpret_cast<char*>(memory.subspan(headerSize, textSize).data()), textSize) {
    static_assert(std::is_trivially_copyable_v<Header> && sizeof(Header) <= headerSize);
    // 32-bit and 64-bit programs share a log.
    static_assert(offsetof(Header, magic) == 0 && offsetof(Header, tail) == 8 &&
                  offsetof(Header, head) == 16);
}

bool LogRing::prepare() {
    if (load(header.magic) == 0) {
        restart(0);
        store(header.magic, ringMagic);
    }
    const Bounds kept = bounds();
    return load(header.magic) == ringMagic && kept.tail <= kept.head && kept.head - kept.tail <= capacity;
}

void LogRing::restart(std::uint64_t written) {
    store(header.tail, written);
    store(header.head, written);
}

LogRing::Bounds LogRing::bounds() const {
    return {.tail = load(header.tail), .head = load(header.head)};
}

void LogRing::append(std::string_view line) {
    const Bounds kept = bounds();
    const std::uint64_t newHead = kept.head + line.size();
    if (newHead - kept.tail > capacity) {
        store(header.tail, endOfLineAt(newHead - capacity - 1, kept.head));
    }
    copyIn(kept.head, line);
    store(header.head, newHead);
}

LogRing::Excerpt LogRing::read(std::span<char> buffer, unsigned start) const {
    const Bounds kept = bounds();
    const std::optional<std::uint64_t> line = findKept(start, kept);
    const std::uint64_t from = line.value_or(kept.tail);
    const auto size = std::min<std::uint64_t>({kept.head - from, buffer.size(), capacity});
    const std::span<char> copy = buffer.first(static_cast<std::size_t>(size));
    copyOut(from, copy);
    const std::size_t lineEnd = std::string_view(copy.data(), copy.size()).rfind('\n');
    const std::size_t length = lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
    return {.length = length, .end = positionAt(from + length), .late = start != 0 && !line};
}

/// Returns the number of bytes written before `position`, if a kept line starts there or the newest line ends
/// there.
std::optional<std::uint64_t> LogRing::findKept(unsigned position, const Bounds& kept) const {
    const std::uint64_t distance = (positionAt(kept.head) + positionCount - position) % positionCount;
    if (position == 0 || distance > kept.head - kept.tail) {
        return std::nullopt;
    }
    const std::uint64_t written = kept.head - distance;
    return written == kept.tail || textAt(written - 1) == '\n' ? std::optional(written) : std::nullopt;
}

/// Returns the end of the line that contains byte number `written`, at most the head.
std::uint64_t LogRing::endOfLineAt(std::uint64_t written, std::uint64_t head) const {
    while (written != head && textAt(written) != '\n') {
        ++written;
    }
    return std::min(written + 1, head);
}

char& LogRing::textAt(std::uint64_t written) const {
    return text[written % textSize];
}

void LogRing::copyIn(std::uint64_t written, std::string_view line) {
    const std::span<char> room = text.subspan(written % textSize);
    const std::size_t beforeEdge = std::min(line.size(), room.size());
    std::ranges::copy(line.substr(0, beforeEdge), room.begin());
    std::ranges::copy(line.substr(beforeEdge), text.begin());
}

void LogRing::copyOut(std::uint64_t written, std::span<char> buffer) const {
    const std::span<char> rest = text.subspan(written % textSize);
    const std::size_t beforeEdge = std::min(buffer.size(), rest.size());
    std::ranges::copy(rest.first(beforeEdge), buffer.begin());
    std::ranges::copy(text.first(buffer.size() - beforeEdge), buffer.subspan(beforeEdge).begin());
}

}  // namespace HostBoard
