#pragma once

#include <string>

/// A command of the test on the search path, before any other of the same name, as long as this object lives.
/// One at a time.
class BoardCommand {
public:
    /// `script`: the shell commands that it runs.
    BoardCommand(const std::string& name, const std::string& script);
    BoardCommand(const BoardCommand&) = delete;
    BoardCommand& operator=(const BoardCommand&) = delete;
    BoardCommand(BoardCommand&&) = delete;
    BoardCommand& operator=(BoardCommand&&) = delete;
    ~BoardCommand();

private:
    std::string searchPath;  // as before
};

/// Writes an executable shell script.
void writeScript(const std::string& path, const std::string& script);
