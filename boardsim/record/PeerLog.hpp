#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "BoundedFile.hpp"
#include "Fault.hpp"

namespace Boardsim {

/// What is noted behind an answer where the one who asked is gone, or its queue is full.
constexpr const char* answerNotTaken = "this was not taken";

/// The log of what one peer received and answered, for people (PeerLogContent says what its lines are). It
/// names the peer's fault wherever that may be the reason of what happens.
class PeerLog {
public:
    /// Goes on with the peer's log where there is one. Throws std::system_error.
    explicit PeerLog(std::string_view peer, const Fault& misbehaviour = {});

    /// A datagram of that many bytes came, which says `what`.
    void received(std::string_view what, std::size_t bytes) const;

    /// Something that has no size came.
    void received(std::string_view what) const;

    /// `what` was answered, in that many bytes.
    void answered(std::string_view what, std::size_t bytes) const;

    /// Something else happened.
    void note(std::string_view what) const;

private:
    void add(std::string_view direction, std::string_view what, const std::string& remark) const;

    std::string fault;  // as it stands in the log; empty without one
    BoundedFile file;
};

}  // namespace Boardsim
