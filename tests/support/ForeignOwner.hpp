#pragma once

#include <string>

#include "Injection.hpp"

/// Makes the file or link at `path` look as if it belonged to another user who is not root. The simulated
/// board has only one user, so the injection changes the answer of the system.
Injection foreignOwnerOf(const std::string& path);

/// Hides the other names of the file or link at `path` from the first look at it, and for a file also from
/// the second, as if they were removed in between.
Injection onlyNameAtFirst(const std::string& path);
