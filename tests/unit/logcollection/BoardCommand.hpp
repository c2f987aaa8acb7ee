#pragma once

#include <string>

/// A command of the test's own under a name on the search path, in front of any other of that name, for
/// as long as this object lives. One at a time.
class BoardCommand {
public:
    /// `script`: what the shell runs.
    BoardCommand(const std::string& name, const std::string& script);
    BoardCommand(const BoardCommand&) = delete;
    BoardCommand& operator=(const BoardCommand&) = delete;
    BoardCommand(BoardCommand&&) = delete;
    BoardCommand& operator=(BoardCommand&&) = delete;
    ~BoardCommand();

private:
    std::string searchPath;  // as it was before
};

/// Writes a shell script that can be run.
void writeScript(const std::string& path, const std::string& script);
