#pragma once

namespace Korvel {

/// Returns true if all of `path` is on the root file system, even if the file does not exist. Accesses no
/// other file system, so it never blocks on one. Returns false if the kernel does not support the check.
bool liesOnRootFileSystem(const char* path);

}  // namespace Korvel
