#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/// The processes of the current sandbox whose program has this name. Zombies do not count.
std::vector<pid_t> processesNamed(const std::string& name);

/// The same, limited to children of `parent`.
std::vector<pid_t> childrenNamed(const std::string& name, pid_t parent);

/// The targets of a process's descriptors, as /proc shows them.
std::vector<std::string> descriptorsOf(pid_t process);

/// The descriptors that a program inherits from this process, one on each line.
std::string inheritedDescriptors();
