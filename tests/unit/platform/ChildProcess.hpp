#pragma once

#include <functional>

#include <sys/types.h>

/// A forked child of the test. It does its work and ends without the test's exit code. The destructor kills a
/// running child.
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
    /// Waits until the child ends. True if it exits with status 0.
    bool succeeds();
    /// Waits until the child ends. True if `signal` ended it.
    bool endsBy(int signal);
    /// Waits until the child stops or ends. True if it stopped.
    bool stops();

private:
    int wait(int options);

    pid_t pid;
    bool ended = false;
};
