#include "Checksums.hpp"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace Report {

void Checksums::append(std::string_view hexadecimal) {
    if (const std::optional<Bytes> bytes = bytesOf(hexadecimal)) {
        sorted.push_back(*bytes);
    }
}

bool Checksums::contains(std::string_view hexadecimal) const {
    const std::optional<Bytes> bytes = bytesOf(hexadecimal);
    return bytes && std::binary_search(sorted.begin(), sorted.end(), *bytes);
}

std::optional<Checksums::Bytes> Checksums::bytesOf(std::string_view hexadecimal) {
    constexpr int base = 16;
    Bytes bytes{};
    if (hexadecimal.size() != 2 * bytes.size()) {
        return std::nullopt;
    }
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const std::string_view digits = hexadecimal.substr(2 * index, 2);
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), bytes.at(index), base);
        if (error != std::errc{} || end != digits.data() + digits.size()) {
            return std::nullopt;
        }
    }
    return bytes;
}

}  // namespace Report
