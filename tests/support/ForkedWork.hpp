#pragma once

#include <functional>
#include <string>

/// Runs `work` in a forked child and returns its text. Changes of process-wide state end with the child.
/// Failed expectations in the child are lost, so check the text instead. Throws std::system_error if the fork
/// fails.
std::string returnedByChild(const std::function<std::string()>& work);
