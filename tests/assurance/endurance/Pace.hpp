#pragma once

#include <chrono>
#include <filesystem>

#include "Process.hpp"
#include "UniqueFd.hpp"

/// The sleeps of a program that runs with the library paced_sleep.
class Pace {
public:
    enum class Sleep {
        untilEnded,  ///< a sleep lasts until endSleep()
        asLongAsUsual,
    };

    /// Creates the FIFOs of the library. Throws if that fails.
    explicit Pace(Sleep chosen);

    /// Whether the library uses this file during a sleep.
    static bool isFifo(const std::filesystem::path& file);

    /// For the start of the program.
    Surroundings surroundings() const;

    /// Waits until the program begins to sleep. Throws if it does not within the time.
    void awaitSleep(std::chrono::seconds limit);

    /// The test has done what it wants to do in the sleep. Throws if that took too long for a sleep of the
    /// usual length.
    void endSleep() const;

private:
    Sleep sleep;
    Base::UniqueFd begin;
    Base::UniqueFd end;
    std::chrono::steady_clock::time_point began;
};
