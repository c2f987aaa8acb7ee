#pragma once

#include <string>

/// The folder of the packages.
inline const std::string packageFolder = "/ffs/run/logs";
