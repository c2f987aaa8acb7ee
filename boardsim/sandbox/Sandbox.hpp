#pragma once

#include "BwrapArguments.hpp"
#include "ProgramTree.hpp"
#include "Scenario.hpp"

namespace Boardsim {

/// How bubblewrap is to make the sandbox of a board: its root, disks, /etc, network and processes, with
/// the program tree and the scenario in it. Throws UsageError where the scenario's configuration file
/// cannot be read, std::system_error where the kernel gives no memory.
BwrapArguments sandboxArguments(const Scenario& scenario, const ProgramTree& tree);

}  // namespace Boardsim
