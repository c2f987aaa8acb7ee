#pragma once

#include <functional>

#include <sys/types.h>

/// A forked child of the test that does some work of its own and ends without running the test's exit
/// code. What is still alive at the end is killed.
class ChildProcess {
public:
    /// The child's exit status is 0 when `work` returns true, and 1 when it returns false.
    explicit ChildProcess(const std::function<bool()>& work);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;

    void send(int signal) const;
    /// Waits for the child to end: true when it was by an exit with status 0.
    bool succeeds();
    /// Waits for the child to end: true when it was by `signal`.
    bool endsBy(int signal);
    /// Waits for the child to stop, or to end: true when it stopped.
    bool stops();

private:
    int wait(int options);

    pid_t pid;
    bool ended = false;
};
