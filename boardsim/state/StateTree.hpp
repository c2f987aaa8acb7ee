#pragma once

#include <string>

namespace Boardsim {

/// Writes the state files of the dispatcher `instance` ("iwf", "sfn") below ROOT/INSTANCE/. Throws
/// std::system_error.
void writeStateTree(const std::string& instance, const std::string& root = "/tmp/fuse");

}  // namespace Boardsim
