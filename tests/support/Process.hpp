#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <sys/types.h>

/// The exit status of a process and its output.
struct Outcome {
    int status = -1;  ///< exit status; 128 + N if signal N ended it
    std::string out;
    std::string err;

    bool operator==(const Outcome&) const = default;
};

/// Prints all of it unchanged, for the message of a failed comparison.
std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

/// The start conditions of a process except its command line.
struct Surroundings {
    std::vector<int> closedDescriptors = {};
    std::vector<std::pair<int, rlim_t>> limits = {};      ///< RLIMIT_... and its value
    std::map<std::string, std::string> environment = {};  ///< added to the environment of this process
    std::vector<int> ignoredSignals = {};
    std::string standardOutput = {};  ///< a file that gets standard output instead of Outcome::out
    bool together = false;            ///< standard error goes to the same place as standard output
    std::optional<uid_t> user = {};   ///< its user id; its only group has the same number
};

/// A real process with its own output files. The destructor kills it if it still runs.
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

    /// Its standard output so far.
    std::string outSoFar() const;

    /// Waits until it ends.
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
