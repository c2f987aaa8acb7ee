#pragma once

#include <optional>
#include <utility>

#include "UniqueFd.hpp"

namespace Boardsim {

/// One end of the connection between boardsim on the host and the first process in the sandbox. The sandbox
/// reports once that it is up; the host forwards signals. When one side exits, the other reads the end of
/// file.
class ControlLine {
public:
    explicit ControlLine(Base::UniqueFd end) : line(std::move(end)) {}

    /// Both ends are close-on-exec. Throws std::system_error.
    static std::pair<ControlLine, ControlLine> openPair();

    int descriptor() const { return line.get(); }

    void close() { line.reset(); }

    /// Sends a signal number, or `up`. Ignores errors: the other side may have exited.
    void send(unsigned char message) const;

    /// Waits for a message. Nothing if the other side has exited.
    std::optional<unsigned char> receive() const;

    /// The sandbox is up.
    static constexpr unsigned char up = 0;

private:
    Base::UniqueFd line;
};

}  // namespace Boardsim
