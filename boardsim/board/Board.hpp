#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "Scenario.hpp"

namespace Boardsim {

/// A running board: its files and peer processes, in the current sandbox. Only one at a time.
class Board {
public:
    /// Writes the files, starts the peers and waits until all are ready. Throws std::system_error, or
    /// std::runtime_error with the name of the peer that failed to start.
    explicit Board(const Scenario& scenario);
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;
    Board(Board&&) = delete;
    Board& operator=(Board&&) = delete;

    /// Kills and reaps the peers that the constructor started. The files stay.
    ~Board();

    /// Process id of a peer, even if it has died. Throws std::out_of_range if the peer was not started.
    pid_t pid(std::string_view peer) const;

    /// What a peer has received: the lines of its RequestRecord.
    static std::vector<std::string> received(std::string_view peer);

private:
    void stop() noexcept;

    std::map<std::string, pid_t, std::less<>> processes;
};

}  // namespace Boardsim
