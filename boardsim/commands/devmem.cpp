// devmem ADDRESS [WIDTH [VALUE]]: reads or writes one register of the simulated board. WIDTH is 8, 16 or 32
// bits. Numbers have C syntax. Adds a line to the board's records at each call.

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "RequestRecord.hpp"
#include "Vask.h"

namespace {

constexpr unsigned defaultWidth = 32;

struct Access {
    std::uint32_t address = 0;
    unsigned width = defaultWidth;  // bits
    std::optional<std::uint32_t> value = {};
};

std::optional<std::uint32_t> parseNumber(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const unsigned long long number = std::strtoull(text.c_str(), &end, 0);
    const bool whole = !text.empty() && text.front() != '-' && *end == '\0';
    if (!whole || errno != 0 || number > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(number);
}

std::optional<Access> parseAccess(const std::vector<std::string>& words) {
    if (words.size() < 2 || words.size() > 4) {
        return std::nullopt;
    }
    Access access;
    const auto address = parseNumber(words[1]);
    const auto width = words.size() > 2 ? parseNumber(words[2]) : defaultWidth;
    if (!address || !width || (*width != 8 && *width != 16 && *width != 32) || *address % (*width / 8) != 0) {
        return std::nullopt;
    }
    access.address = *address;
    access.width = *width;
    if (words.size() == 4) {
        access.value = parseNumber(words[3]);
        return access.value ? std::optional(access) : std::nullopt;
    }
    return access;
}

void record(const std::vector<std::string>& words) {
    std::string line = "devmem";
    for (std::size_t i = 1; i < words.size(); ++i) {
        line += " " + words[i];
    }
    Boardsim::RequestRecord("devmem").addLine(line);
}

/// Reads or writes the low bits of the register, in the board's byte order.
void perform(const Access& access, void* mapped) {
    const std::size_t bytes = access.width / 8;
    if (access.value) {
        std::memcpy(mapped, &*access.value, bytes);
        return;
    }
    std::uint32_t value = 0;
    std::memcpy(&value, mapped, bytes);
    std::printf("0x%0*X\n", static_cast<int>(2 * bytes), value);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> words(argv, argv + argc);
        const auto access = parseAccess(words);
        if (!access) {
            std::cerr << "usage: devmem ADDRESS [WIDTH [VALUE]]\n";
            return EXIT_FAILURE;
        }
        record(words);
        void* mapped = nullptr;
        if (vask_cma_process_init() != 0 || vask_cma_phy_to_virt(access->address, &mapped) != 0) {
            std::cerr << "devmem: nothing at " << words[1] << '\n';
            return EXIT_FAILURE;
        }
        perform(*access, mapped);
    } catch (const std::exception& error) {
        std::cerr << "devmem: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
