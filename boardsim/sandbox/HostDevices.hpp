#pragma once

namespace Boardsim {

/// Makes the entries of the device files that a sandbox shares with the host read-only, for this process and
/// what it starts from now on; the devices work as ever. Root's sandbox has the host's user id and could
/// change their owners and permissions for the whole host. Does nothing without the right to mount: then it
/// is no such sandbox.
void protectHostDevices();

}  // namespace Boardsim
