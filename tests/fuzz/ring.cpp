// The shared memory of a log, in which any process can have written anything. The input is the header (magic
// word or not, tail, head), texts at places of the ring, and then reads and appends. These must work also
// with a wrong header, because it can change after the check.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <sys/mman.h>

#include "BoardLibraries.hpp"
#include "FuzzInput.hpp"
#include "FuzzTarget.hpp"
#include "LogRing.hpp"
#include "SmLogReader.hpp"

namespace {

using Fuzz::FuzzInput;
using Fuzz::require;
using HostBoard::LogRing;

constexpr std::size_t numberSize = 8;

/// The memory of a log, all zeros.
class Memory {
public:
    Memory()
        : address(::mmap(nullptr, LogRing::memorySize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS,
                         -1, 0)) {
        require(address != MAP_FAILED, "there is memory");
    }
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;
    Memory(Memory&&) = delete;
    Memory& operator=(Memory&&) = delete;
    ~Memory() { ::munmap(address, LogRing::memorySize); }

    std::span<std::byte> bytes() const { return {static_cast<std::byte*>(address), LogRing::memorySize}; }

    /// Cuts what goes beyond the end.
    void write(std::size_t at, std::string_view text) const {
        const std::span<std::byte> room = bytes().subspan(at % LogRing::memorySize);
        std::ranges::copy(std::as_bytes(std::span(text.substr(0, room.size()))), room.begin());
    }

private:
    void* const address;
};

/// A number near a round one, because little happens elsewhere: N * 2^SHIFT + SIGNED.
std::uint64_t position(FuzzInput& input) {
    const std::uint64_t count = input.number(1);
    const std::uint64_t shift = input.number(1) % 64;
    return (count << shift) + static_cast<std::uint64_t>(static_cast<std::int64_t>(input.number(2)) - 0x8000);
}

void writeNumber(const Memory& memory, std::size_t at, std::uint64_t number) {
    memory.write(at, {reinterpret_cast<const char*>(&number), sizeof number});
}

/// What a process of bad will leaves.
void spoil(FuzzInput& input, const Memory& memory) {
    const std::uint64_t tail = position(input);
    writeNumber(memory, numberSize, tail);
    writeNumber(memory, 2 * numberSize, tail + position(input));
    for (std::uint64_t texts = input.number(1) % 8; texts > 0; --texts) {
        const std::size_t place = LogRing::headerSize + (tail + position(input)) % LogRing::textSize;
        memory.write(place, input.bytes(static_cast<std::size_t>(input.number(2))));
    }
}

/// The log that korvel reads, in memory of the target.
class RingLog final : public SmLog {
public:
    explicit RingLog(LogRing& shared) : ring(shared) {}

    void write(int /*level*/, const char* /*tag*/, const char* /*format*/, ...) override {}
    void vwrite(int /*level*/, const char* /*tag*/, const char* /*format*/,
                std::va_list /*arguments*/) override {}
    unsigned read(char* buffer, unsigned size, AppID /*app*/, unsigned start, unsigned /*mode*/) override {
        return ring.read({buffer, size}, start).end;  // no zero at the end: that is for korvel to expect
    }
    bool overlap(unsigned /*lastPosition*/, unsigned /*newPosition*/) override { return false; }

private:
    LogRing& ring;
};

/// Reads from `start`, and returns where the next read starts.
unsigned readOnce(const LogRing& ring, std::size_t size, unsigned start) {
    const auto buffer = std::make_unique<char[]>(size);
    const LogRing::Excerpt excerpt = ring.read({buffer.get(), size}, start);
    require(excerpt.length <= size, "an excerpt fits");
    require(excerpt.length == 0 || buffer[excerpt.length - 1] == '\n', "an excerpt is whole lines");
    require(excerpt.end != 0 && (start != 0 || !excerpt.late), "a position is never 0");
    return excerpt.end;
}

void use(FuzzInput& input, LogRing& ring) {
    constexpr std::uint64_t kinds = 5;
    constexpr std::size_t large = 64;  // times 65535 bytes are more than a ring holds
    unsigned start = 0;
    for (int count = 0; count < 16 && !input.isAtEnd(); ++count) {
        const auto size = static_cast<std::size_t>(input.number(2));
        switch (input.number(1) % kinds) {
            case 0:
                ring.append(std::string(std::min(size, LogRing::maxEntry - 1), 'x') + '\n');
                break;
            case 1:
                start = static_cast<unsigned>(position(input));
                [[fallthrough]];
            case 2:
                start = readOnce(ring, size, start);
                break;
            case 3:
                readOnce(ring, size * large, start);
                return;  // it takes long
            default:
                require(Korvel::readSmLog("fuzz", static_cast<unsigned>(size), 0).size() <= size,
                        "a text fits");
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(Fuzz::textOf(data, size));
    const Memory memory;
    LogRing ring(memory.bytes());
    if (input.number(1) % 2 == 0) {
        require(ring.prepare(), "empty memory becomes a ring");  // and so has the magic word
    }
    spoil(input, memory);
    RingLog log(ring);
    Fuzz::setSharedLog(log);
    use(input, ring);
    static_cast<void>(ring.prepare());
    return 0;
}
