#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

/// Processes as /proc shows them. A process can change its own command line; trust only the rest.
namespace Boardsim::ProcessTable {

/// The ids of all visible processes, sorted.
std::vector<pid_t> ids();

/// The words of a command line, up to 64 KiB; empty if the process has exited.
std::vector<std::string> commandLine(pid_t process);

/// True if the process belongs to this user.
bool isOwn(pid_t process);

/// 0 if the parent is not visible. Throws std::system_error if the process has exited, as do all functions
/// below.
pid_t parent(pid_t process);

/// The id of a process in its innermost PID namespace.
pid_t innermostId(pid_t process);

/// An identifier of that namespace.
std::string pidNamespace(pid_t process);

/// In UTC.
std::chrono::sys_seconds startTime(pid_t process);

}  // namespace Boardsim::ProcessTable
