#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/// A command on a terminal of its own, as a person's shell has one.
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

    /// Takes what appears on the terminal until `text` is there.
    void expect(const std::string& text);

    /// All that appears from now on until nobody has the terminal any more, with "\n" for each line end.
    std::string rest() const;

    /// Waits for the command's end. Its exit status, 128 + N where signal N ended it.
    int wait() const;

private:
    int terminal = -1;
    pid_t child = -1;
    std::string shown;
};
