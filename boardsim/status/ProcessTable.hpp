#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

/// What /proc tells of processes. Their command lines are their own doing; all else is the kernel's word.
namespace Boardsim::ProcessTable {

/// The ids of all processes that are to be seen, in order.
std::vector<pid_t> ids();

/// The words of a command line, as far as its first 64 KiB go; none where the process is gone.
std::vector<std::string> commandLine(pid_t process);

/// Whether the process is this user's.
bool isOwn(pid_t process);

/// 0 where the parent is not to be seen. Throws std::system_error where the process is gone, as all below do.
pid_t parent(pid_t process);

/// The id of a process in the innermost process table that it is part of.
pid_t innermostId(pid_t process);

/// A name for that table, the same for all processes whose innermost one it is.
std::string innermostTable(pid_t process);

/// By the clock of the world.
std::chrono::sys_seconds startTime(pid_t process);

}  // namespace Boardsim::ProcessTable
