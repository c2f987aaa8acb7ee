#include "WireNumber.hpp"

std::string littleEndian(std::uint32_t number) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(number >> shift)));
    }
    return bytes;
}

std::uint32_t numberAt(const std::string& message, std::size_t offset) {
    std::uint32_t number = 0;
    for (unsigned place = 0; place < 4; ++place) {
        const auto byte = static_cast<unsigned char>(message.at(offset + place));
        number |= static_cast<std::uint32_t>(byte) << (8 * place);
    }
    return number;
}

std::string textAt(const std::string& message, std::size_t offset, std::size_t size) {
    const std::string field = message.substr(offset, size);
    return field.substr(0, field.find('\0'));
}
