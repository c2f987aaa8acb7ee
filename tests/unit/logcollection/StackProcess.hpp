#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

#include "Process.hpp"

/// A process of the fast-path stack as log collection sees it: a name in the process list, and a reaction to
/// SIGUSR1, the dump request.
class StackProcess {
public:
    /// `onSignal`: the shell commands for each signal. `argument` is in the process list too. Returns when
    /// the process is ready for signals.
    explicit StackProcess(const std::string& name, const std::string& onSignal = ":",
                          const std::string& argument = "");

    pid_t pid() const { return process->pid(); }

    /// Waits until it has handled its first signal.
    void awaitSignal() const;

    bool wasSignalled() const;

    /// Ends the process and waits until it is gone from the process list.
    void end() { process.reset(); }

private:
    std::optional<Process> process;
};
