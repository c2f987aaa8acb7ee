#include "TrafficNoise.hpp"

namespace Boardsim {
namespace {

/// Spreads each bit of `number` over all bits of the result.
std::uint64_t mixed(std::uint64_t number) {
    number += 0x9e3779b97f4a7c15U;
    number = (number ^ (number >> 30U)) * 0xbf58476d1ce4e5b9U;
    number = (number ^ (number >> 27U)) * 0x94d049bb133111ebU;
    return number ^ (number >> 31U);
}

}  // namespace

TrafficNoise::TrafficNoise(std::uint64_t seed, std::uint64_t source) : start(mixed(mixed(seed) ^ source)) {
}

TrafficNoise::Draws TrafficNoise::in(std::uint64_t second) const {
    return Draws(mixed(start ^ second));
}

std::uint64_t TrafficNoise::Draws::next(std::uint64_t least, std::uint64_t most) {
    return least + mixed(start ^ drawn++) % (most - least + 1);
}

}  // namespace Boardsim
