#pragma once

#include <cstdint>

/// Occupies a UDP port as long as this object lives.
class OccupiedPort {
public:
    explicit OccupiedPort(std::uint16_t port);
    OccupiedPort(const OccupiedPort&) = delete;
    OccupiedPort& operator=(const OccupiedPort&) = delete;
    OccupiedPort(OccupiedPort&&) = delete;
    OccupiedPort& operator=(OccupiedPort&&) = delete;
    ~OccupiedPort();

private:
    int socket;
};
