#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace Report {

using Random = std::mt19937_64;

/// Visits the combinations of several choices, from a random one, each once.
class Odometer {
public:
    /// `sizes` are the numbers of choices, none of them 0. At most `most` combinations are visited.
    Odometer(std::vector<std::size_t> sizes, std::uint64_t most, Random& random) : wheels(std::move(sizes)) {
        for (const std::size_t size : wheels) {
            places.push_back(random() % size);
            left = std::min(left * size, most);
        }
    }

    /// The current choices.
    const std::vector<std::size_t>& choices() const { return places; }

    /// Goes on to the next combination. Returns false if there is none.
    [[nodiscard]] bool advance() {
        for (std::size_t wheel = places.size(); wheel > 0; --wheel) {
            places[wheel - 1] = (places[wheel - 1] + 1) % wheels[wheel - 1];
            if (places[wheel - 1] != 0) {
                break;
            }
        }
        --left;
        return left > 0;
    }

private:
    std::vector<std::size_t> wheels;
    std::vector<std::size_t> places;
    std::uint64_t left = 1;
};

}  // namespace Report
