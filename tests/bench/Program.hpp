#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

/// Starts a program, found on the search path, with its output thrown away. The caller waits for its end.
/// `prepare` runs in the child process.
pid_t startProgram(
    std::vector<std::string> words, const std::function<void()>& prepare = [] {});

/// The sum of some fields of a process's /proc/PID/status at this moment, in KiB. Field names end with a
/// colon.
long statusKiB(pid_t process, const std::set<std::string>& fields);

/// The private and file memory (RssAnon + RssFile) of a process at this moment, in KiB.
long memoryKiB(pid_t process);
