#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

#include "Process.hpp"

/// A process of the fast-path stack as log collection sees it: a name in the process list, and something
/// that happens when SIGUSR1 asks for the dump.
class StackProcess {
public:
    /// `onSignal`: what the shell does for each signal; `argument` stands in the process list too.
    /// Returns when the process is ready for signals.
    explicit StackProcess(const std::string& name, const std::string& onSignal = ":",
                          const std::string& argument = "");

    pid_t pid() const { return process->pid(); }

    /// Waits until it has handled its first signal.
    void awaitSignal() const;

    bool wasSignalled() const;

    /// Ends the process, and waits until the system has forgotten it.
    void end() { process.reset(); }

private:
    std::optional<Process> process;
};
