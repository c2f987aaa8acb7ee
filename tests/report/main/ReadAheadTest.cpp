#include <atomic>
#include <chrono>
#include <cstddef>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ReadAhead.hpp"

namespace {

using Numbers = Report::ReadAhead<std::size_t>;

/// The later ones of each three are made faster.
std::size_t made(std::size_t number) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2 - number % 3));
    return number;
}

TEST(ReadAhead, HandsResultsOverInOrderHoweverLongEachTakes) {
    Numbers numbers(20, {made, made, made});
    std::vector<std::size_t> taken;
    taken.reserve(20);
    for (int count = 0; count < 20; ++count) {
        taken.push_back(numbers.next());
    }
    std::vector<std::size_t> expected(20);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(taken, expected);
}

TEST(ReadAhead, ThrowsAFailureInPlaceOfTheResultAndGoesOn) {
    Numbers numbers(3, {[](std::size_t number) -> std::size_t {
                        if (number == 1) {
                            throw std::runtime_error("no second one");
                        }
                        return number;
                    }});
    EXPECT_EQ(numbers.next(), 0U);
    EXPECT_THROW(numbers.next(), std::runtime_error);
    EXPECT_EQ(numbers.next(), 2U);
}

TEST(ReadAhead, IsOnlyAFewResultsAheadOfTheCaller) {
    std::atomic<std::size_t> begun = 0;
    const auto count = [&](std::size_t number) {
        ++begun;
        return number;
    };
    {
        Numbers numbers(1000, {count, count});
        numbers.next();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_LE(begun, 4U);
    }
    EXPECT_LE(begun, 4U);  // nor does it make the rest if nobody takes it
}

TEST(ReadAhead, MakesNothingWithoutANumber) {
    const Numbers numbers(0, {made});
}

}  // namespace
