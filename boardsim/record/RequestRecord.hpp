#pragma once

#include <string>
#include <string_view>

#include "BoundedFile.hpp"

namespace Boardsim {

/// Every byte that one peer received, one line per event. A datagram is lower-case hex, a signal is its name,
/// a command is its command line. Can be read while the peer runs.
class RequestRecord {
public:
    /// Appends to an existing file. Throws std::system_error.
    explicit RequestRecord(std::string_view peer);

    void addDatagram(std::string_view bytes) const;

    /// Adds anything but a datagram, as a line of text.
    void addLine(std::string line) const;

private:
    BoundedFile file;
};

}  // namespace Boardsim
