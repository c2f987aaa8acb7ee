#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.hpp"

namespace Report {

/// The sidecar to write anew with the package: the one that the user names, else the one beside the package.
std::optional<std::string> sidecarToRewrite(const Arguments& arguments);

/// Runs clean or restore. Prints its notes or its refusal on standard error, and returns the exit status.
int rewrite(const std::function<std::vector<std::string>()>& action);

}  // namespace Report
