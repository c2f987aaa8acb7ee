#pragma once

namespace Boardsim {

/// The main function of the board's SSH server. Serves one connection, whose bytes come and go through the
/// standard streams. Returns the server's exit status when the connection has ended. Throws UsageError if the
/// user's host key is none, and std::runtime_error if there is no server.
int runSshServer();

}  // namespace Boardsim
