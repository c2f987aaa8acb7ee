#pragma once

namespace Boardsim {

/// Makes the host's device files that the sandbox shares read-only, for this process and its children. The
/// devices still work. Root in the sandbox has the host's user id, and could change their owner and
/// permissions for the whole host. Does nothing without the privilege to mount: such a root gets no sandbox
/// with the host's user id.
void protectHostDevices();

}  // namespace Boardsim
