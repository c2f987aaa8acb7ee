#pragma once

#include <string>

/// Writes a shell script that replaces the command `name` for processes with the returned search path. The
/// script finds the command itself below /bin.
std::string searchPathWith(const std::string& name, const std::string& script);
