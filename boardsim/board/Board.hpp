#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "Scenario.hpp"

namespace Boardsim {

/// A running board: its files and its peer processes, inside the current sandbox. One at a time.
class Board {
public:
    /// Lays down the files, starts the peers, and returns when all of them are ready. Throws
    /// std::system_error, or std::runtime_error that names a peer that did not get ready.
    explicit Board(const Scenario& scenario);
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;
    Board(Board&&) = delete;
    Board& operator=(Board&&) = delete;

    /// Ends and reaps the peers that the constructor started, and only those. The files stay.
    ~Board();

    /// Process id of a peer, of one that died since, too. Throws std::out_of_range for one that was not
    /// started.
    pid_t pid(std::string_view peer) const;

    /// What a peer received so far: a line of lower-case hex for each datagram, "SIGUSR1" for the signal.
    static std::vector<std::string> received(std::string_view peer);

private:
    void stop() noexcept;

    std::map<std::string, pid_t, std::less<>> processes;
};

}  // namespace Boardsim
