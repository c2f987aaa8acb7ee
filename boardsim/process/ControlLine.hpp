#pragma once

#include <optional>
#include <utility>

#include "UniqueFd.hpp"

namespace Boardsim {

/// One end of the line between the program on the host and the first process in the sandbox. The sandbox
/// says one thing, that it is up; the host passes signals on. When either side ends, the other one sees
/// the end of the line.
class ControlLine {
public:
    explicit ControlLine(Base::UniqueFd end) : line(std::move(end)) {}

    /// Both ends, close-on-exec. Throws std::system_error.
    static std::pair<ControlLine, ControlLine> openPair();

    int descriptor() const { return line.get(); }

    /// Gives this end up.
    void close() { line.reset(); }

    /// Sends a signal's number, or `up`. The other side may be gone already; that is no error.
    void send(unsigned char message) const;

    /// Waits for a message; none where the other side is gone.
    std::optional<unsigned char> receive() const;

    /// Tells the host that the sandbox is up.
    static constexpr unsigned char up = 0;

private:
    Base::UniqueFd line;
};

}  // namespace Boardsim
