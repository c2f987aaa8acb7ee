#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

/// Starts a program from the search path and discards its standard output. The caller must wait for its exit.
/// `prepare` runs in the child process before the program.
pid_t startProgram(
    std::vector<std::string> words, const std::function<void()>& prepare = [] {});

/// The current sum of some fields in a process's /proc/PID/status, in KiB. Field names end with a colon.
long statusKiB(pid_t process, const std::set<std::string>& fields);

/// The current private and file memory (RssAnon + RssFile) of a process, in KiB.
long memoryKiB(pid_t process);
