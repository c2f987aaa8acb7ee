#include "HexDump.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "Console.hpp"

namespace Korvel {
namespace {

constexpr unsigned lineBytes = 16;
constexpr std::size_t flushSize = 65536;  // whole pages
constexpr std::size_t columnSize = 3;     // two digits and a blank
constexpr std::size_t maximumOffsetDigits = 8;
constexpr std::size_t maximumLineLength =
    1 + maximumOffsetDigits + 2 + lineBytes * columnSize + 2 + lineBytes + 2;  // blanks, quotes and line end
constexpr char digits[] = "0123456789ABCDEF";
constexpr unsigned digitBits = 4;

/// "00 " to "FF ".
constexpr auto hexColumns = [] {
    std::array<std::array<char, columnSize>, 256> columns{};
    for (unsigned byte = 0; byte < columns.size(); ++byte) {
        columns[byte] = {digits[byte >> digitBits], digits[byte % 16], ' '};
    }
    return columns;
}();

constexpr auto displayCharacters = [] {
    constexpr unsigned firstPrintable = 32;
    constexpr unsigned lastPrintable = 126;
    std::array<char, 256> characters{};
    for (unsigned byte = 0; byte < characters.size(); ++byte) {
        const bool printable = byte >= firstPrintable && byte <= lastPrintable;
        characters[byte] = printable ? static_cast<char>(byte) : '.';
    }
    return characters;
}();

/// Collects lines in a buffer and prints it when it is large enough. Lines are added without bounds checks,
/// because the buffer always has room for one more line.
class LineBuffer {
public:
    LineBuffer() = default;
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;
    LineBuffer(LineBuffer&&) = delete;
    LineBuffer& operator=(LineBuffer&&) = delete;
    ~LineBuffer() = default;

    /// Reads each of the `count` bytes once, because others may change them meanwhile.
    void add(std::uint32_t offset, const unsigned char* source, unsigned count) {
        std::array<unsigned char, lineBytes> bytes{};
        std::copy_n(source, count, bytes.begin());
        put(" ");
        putOffset(offset);
        put("  ");
        for (unsigned i = 0; i < count; ++i) {
            const auto& column = hexColumns[bytes[i]];
            put({column.data(), column.size()});
        }
        put(" '");
        for (unsigned i = 0; i < count; ++i) {
            *end++ = displayCharacters[bytes[i]];
        }
        put("'\n");
        if (static_cast<std::size_t>(end - text.data()) >= flushSize) {
            flushWholePages();
        }
    }

    void flush() {
        print(std::string_view(text.data(), static_cast<std::size_t>(end - text.data())));
        end = text.data();
    }

private:
    /// Keeps what is beyond the last whole page: a pipe takes whole pages twice as fast.
    void flushWholePages() {
        print(std::string_view(text.data(), flushSize));
        const auto rest = static_cast<std::size_t>(end - text.data()) - flushSize;
        std::memmove(text.data(), text.data() + flushSize, rest);
        end = text.data() + rest;
    }

    void put(std::string_view piece) {
        std::memcpy(end, piece.data(), piece.size());
        end += piece.size();
    }

    /// Writes at least four digits.
    void putOffset(std::uint32_t offset) {
        unsigned shift = 3 * digitBits;
        while (shift < 7 * digitBits && (offset >> (shift + digitBits)) != 0) {
            shift += digitBits;
        }
        for (;; shift -= digitBits) {
            *end++ = digits[(offset >> shift) % 16];
            if (shift == 0) {
                return;
            }
        }
    }

    std::vector<char> text = std::vector<char>(flushSize + maximumLineLength);
    char* end = text.data();
};

}  // namespace

void printHexDump(const void* data, unsigned size) {
    const auto* const bytes = static_cast<const unsigned char*>(data);
    LineBuffer lines;
    std::uint64_t offset = 0;
    for (; offset + lineBytes < size; offset += lineBytes) {
        lines.add(static_cast<std::uint32_t>(offset), bytes + offset, lineBytes);
        if (!std::cout) {
            return;  // the rest, possibly gigabytes, would be lost
        }
    }
    // The last line. A dump of 0 bytes also has one, with the offset before the first.
    constexpr std::uint32_t beforeFirst = 0U - lineBytes;
    const auto last = static_cast<std::uint32_t>(offset);
    lines.add(size == 0 ? beforeFirst : last, bytes + offset, size - last);
    lines.flush();
}

}  // namespace Korvel
