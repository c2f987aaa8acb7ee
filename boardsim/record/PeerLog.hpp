#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "BoundedFile.hpp"
#include "Fault.hpp"

namespace Boardsim {

/// Note after an answer, if the client has exited or its queue is full.
constexpr const char* answerNotTaken = "this was not taken";

/// The log of one peer, for people. PeerLogContent describes its lines. Answers and notes name the peer's
/// fault, because it may be their cause.
class PeerLog {
public:
    /// Appends to an existing log. Throws std::system_error.
    explicit PeerLog(std::string_view peer, const Fault& misbehaviour = {});

    /// Logs a datagram of this size.
    void received(std::string_view what, std::size_t bytes) const;

    /// Logs something without a size, such as a signal.
    void received(std::string_view what) const;

    void answered(std::string_view what, std::size_t bytes) const;

    /// Logs any other event.
    void note(std::string_view what) const;

private:
    void add(std::string_view direction, std::string_view what, const std::string& remark) const;

    std::string fault;  // as in the log; empty without a fault
    BoundedFile file;
};

}  // namespace Boardsim
