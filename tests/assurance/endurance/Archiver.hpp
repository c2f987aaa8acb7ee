#pragma once

#include <cstddef>
#include <string>

#include "Pace.hpp"
#include "Process.hpp"

/// korvel archive, as a process that sleeps between two reads of the logs until the test goes on.
class Archiver {
public:
    /// Starts it. Returns when it is about to sleep: after the first read.
    explicit Archiver(Pace& ofItsSleeps);

    /// Lets it read the logs once more.
    void goOn();

    /// What a process needs.
    struct Footprint {
        unsigned long memory = 0;  ///< kB that belong to the process alone
        std::size_t descriptors = 0;

        bool operator==(const Footprint&) const = default;
    };

    Footprint footprint() const;

    /// How many of its commands have failed so far.
    unsigned failedCommands() const;

    /// Ends it by SIGTERM. Throws if it ends otherwise.
    void end();

private:
    Pace& pace;
    Process process;
};
