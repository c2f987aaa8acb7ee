#pragma once

namespace Korvel {

/// Whether the whole way along `path` stays on the root file system, whether or not there is something at its
/// end. Asks no other file system, so it never waits for one. False where the kernel cannot tell.
bool liesOnRootFileSystem(const char* path);

}  // namespace Korvel
