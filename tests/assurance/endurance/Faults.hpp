#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "ArchivedLog.hpp"

/// Faults around a running archiver. SYSLIB's archive is on the disk /ffs, the dispatcher's on another one.
class Faults {
public:
    /// On average, one fault begins in so many reads.
    explicit Faults(unsigned readsPerFault);

    /// Before each read. `next` bytes are new in each log. May begin a fault, or end it.
    void change(const ArchivedLog& dispatcher, const ArchivedLog& syslib, unsigned next);

    /// Ends the fault.
    void clear();

private:
    void begin(const ArchivedLog& dispatcher, const ArchivedLog& syslib, unsigned next);
    void blockCopy(const ArchivedLog& log);
    void leaveRoom(std::uint64_t bytes);
    unsigned random(unsigned limit);

    std::mt19937 generator{1};  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same faults each time
    unsigned period;
    unsigned readsLeft = 0;
    std::vector<std::string> obstacles;
};
