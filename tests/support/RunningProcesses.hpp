#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/// The processes of the current sandbox whose program has this name, those that ended and were not waited for
/// left out.
std::vector<pid_t> processesNamed(const std::string& name);

/// Those of them that are children of `parent`.
std::vector<pid_t> childrenNamed(const std::string& name, pid_t parent);

/// What the descriptors of a process lead to, as /proc has it.
std::vector<std::string> descriptorsOf(pid_t process);
