#pragma once

#include <string>
#include <string_view>

#include "BoundedFile.hpp"

namespace Boardsim {

/// What one peer received, byte for byte, kept in a file that can be read while the peer runs: a line for
/// each datagram (lower-case hex), each signal (its name) and each call of a command (its words).
class RequestRecord {
public:
    /// Goes on with the peer's file where there is one. Throws std::system_error.
    explicit RequestRecord(std::string_view peer);

    void addDatagram(std::string_view bytes) const;

    /// Something that is no datagram, as a line of text.
    void addLine(std::string line) const;

private:
    BoundedFile file;
};

}  // namespace Boardsim
