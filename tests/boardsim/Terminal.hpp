#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/// A command on its own terminal, as in a person's shell.
class Terminal {
public:
    explicit Terminal(const std::vector<std::string>& command);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    Terminal(Terminal&&) = delete;
    Terminal& operator=(Terminal&&) = delete;
    ~Terminal() { hangUp(); }

    void hangUp();

    void type(const std::string& keys) const;

    /// Reads the terminal until `text` appears.
    void expect(const std::string& text);

    /// Reads the terminal until all processes have closed it. Returns the text with "\n" for each line end.
    std::string rest() const;

    /// Waits until the command ends. Returns its exit status, or 128 + N if signal N ended it.
    int wait() const;

private:
    int terminal = -1;
    pid_t child = -1;
    std::string shown;
};
