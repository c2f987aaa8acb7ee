#pragma once

#include <functional>
#include <string>

/// What `work` returns in a forked child, with which its changes to process-wide state end. What the child
/// expects is not heard of: expectations are about the text. Throws std::system_error where there can be no
/// child.
std::string returnedByChild(const std::function<std::string()>& work);
