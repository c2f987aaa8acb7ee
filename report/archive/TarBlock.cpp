#include "TarBlock.hpp"

#include <algorithm>
#include <charconv>
#include <numeric>

namespace Report {

namespace {

unsigned sum(std::string_view bytes) {
    const auto add = [](unsigned total, char byte) { return total + static_cast<unsigned char>(byte); };
    return std::accumulate(bytes.begin(), bytes.end(), 0U, add);
}

/// The number that the header holds as its checksum; 0 if there is none.
unsigned writtenChecksum(std::string_view header) {
    std::string_view digits = header.substr(tarChecksumAt, tarChecksumSize);
    digits.remove_prefix(std::min(digits.find_first_not_of(' '), digits.size()));
    unsigned number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number, 8);
    return number;
}

}  // namespace

unsigned tarChecksum(std::string_view header) {
    constexpr std::size_t after = tarChecksumAt + tarChecksumSize;
    constexpr unsigned blanks = tarChecksumSize * ' ';
    return sum(header.substr(0, tarChecksumAt)) + blanks + sum(header.substr(after, tarBlockSize - after));
}

bool startsLikeTar(std::string_view block) {
    constexpr std::size_t magicAt = 257;
    if (block.size() > magicAt && block.substr(magicAt).starts_with("ustar")) {
        return true;
    }
    return block.size() >= tarBlockSize && writtenChecksum(block) > 0 &&
           writtenChecksum(block) == tarChecksum(block);
}

}  // namespace Report
