#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <sys/types.h>

/// How a process ended and what it wrote.
struct Outcome {
    int status = -1;  ///< exit status; 128 + N where signal N ended it
    std::string out;
    std::string err;

    bool operator==(const Outcome&) const = default;
};

/// All of it as it stands, for the message of a comparison that fails.
std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

/// What a process is started with beside its command line.
struct Surroundings {
    std::vector<int> closedDescriptors = {};
    std::vector<std::pair<int, rlim_t>> limits = {};      ///< RLIMIT_... and its value
    std::map<std::string, std::string> environment = {};  ///< added to this process's
    std::vector<int> ignoredSignals = {};
    std::string standardOutput = {};  ///< a file to write to in place of Outcome::out
    bool together = false;            ///< standard error goes where standard output goes
    std::optional<uid_t> user = {};   ///< who it runs as, with a group of the same number and no other
};

/// A real process with its own output files. Destroying it kills it, if it still runs.
class Process {
public:
    /// `command`: the program, by path or by name on the search path, and its arguments.
    explicit Process(const std::vector<std::string>& command, const Surroundings& surroundings = {});
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    Process(Process&&) = delete;
    Process& operator=(Process&&) = delete;
    ~Process();

    pid_t pid() const { return child; }

    /// What it wrote to standard output so far.
    std::string outSoFar() const;

    /// Waits for its end.
    Outcome wait();

private:
    pid_t child = -1;
    int out = -1;
    int err = -1;
};

/// Runs a command to its end.
Outcome run(const std::vector<std::string>& command, const Surroundings& surroundings = {});

/// Runs the program under test, found on the search path.
Outcome korvel(std::vector<std::string> arguments, const Surroundings& surroundings = {});
