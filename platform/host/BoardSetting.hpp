#pragma once

namespace HostBoard {

/// The decimal number in the file `path`, or 0 when the file is missing or holds anything else.
int boardSetting(const char* path);

}  // namespace HostBoard
