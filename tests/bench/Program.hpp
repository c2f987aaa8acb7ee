#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/// Starts a program, found on the search path, with its output thrown away. The caller waits for its end.
pid_t startProgram(std::vector<std::string> words);

/// The private and file memory (RssAnon + RssFile) of a process at this moment, in KiB.
long memoryKiB(pid_t process);
