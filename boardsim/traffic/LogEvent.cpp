#include "LogEvent.hpp"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>

namespace Boardsim {
namespace {

/// In the five seconds between two reads of the archiver, that is more than a shared-memory log holds.
constexpr std::uint64_t mostStrangers = 4000;

std::string addressOf(TrafficNoise::Draws& noise) {
    constexpr std::uint64_t last = 254;
    return "10." + std::to_string(noise.next(64, 95)) + "." + std::to_string(noise.next(0, last)) + "." +
           std::to_string(noise.next(1, last));
}

std::string hexNumberOf(TrafficNoise::Draws& noise) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08" PRIx64, noise.next(1, UINT32_MAX));
    return text.data();
}

}  // namespace

void addStrangers(LogLines& lines, std::uint64_t datagrams, TrafficNoise::Draws noise,
                  std::string (*text)(const std::string& address, const std::string& number)) {
    for (std::uint64_t each = 0; each < std::min(datagrams, mostStrangers); ++each) {
        const std::string address = addressOf(noise);
        lines.push_back({LogLevel::warning, text(address, hexNumberOf(noise))});
    }
}

}  // namespace Boardsim
