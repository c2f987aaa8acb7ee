#pragma once

#include <string>

/// Where packages are put.
inline const std::string packageFolder = "/ffs/run/logs";
