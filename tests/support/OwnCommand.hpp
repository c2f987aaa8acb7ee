#pragma once

#include <string>

/// Writes a shell script that takes the place of the command `name` for whoever gets the returned search
/// path. It finds the command itself below /bin.
std::string searchPathWith(const std::string& name, const std::string& script);
