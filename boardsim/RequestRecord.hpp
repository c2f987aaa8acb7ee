#pragma once

#include <string>
#include <string_view>

#include "UniqueFd.hpp"

/// What one peer received, kept in a file that can be read while the peer runs: a line for each datagram
/// (lower-case hex) and for each signal (its name).
class RequestRecord {
public:
    /// Goes on with the peer's file where there is one. Throws std::system_error.
    explicit RequestRecord(std::string_view peer);

    void addDatagram(std::string_view bytes) const;
    void addSignal(std::string_view name) const;

private:
    void addLine(std::string line) const;

    UniqueFd file;
};
