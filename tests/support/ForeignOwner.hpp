#pragma once

#include <string>

#include "Injection.hpp"

/// Has a process see the file or link at `path` as that of another user, who is not root either. There is
/// but one user on the simulated board, so the answer of the system is changed on its way.
Injection foreignOwnerOf(const std::string& path);
