#pragma once

namespace HostBoard {

/// Returns the decimal number in the file `path`, or 0 if the file is missing or contains anything else.
int boardSetting(const char* path);

}  // namespace HostBoard
