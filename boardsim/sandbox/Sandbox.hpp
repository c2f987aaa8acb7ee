#pragma once

#include "BwrapArguments.hpp"
#include "ProgramTree.hpp"
#include "Scenario.hpp"
#include "SshAccess.hpp"

namespace Boardsim {

/// The bubblewrap options for a board's sandbox: root, disks, /etc, network and processes, with the program
/// tree, the scenario and the keys for SSH. Throws UsageError if the scenario's configuration file cannot be
/// read, and std::system_error if memory runs out.
BwrapArguments sandboxArguments(const Scenario& scenario, const SshAccess& ssh, const ProgramTree& tree);

}  // namespace Boardsim
