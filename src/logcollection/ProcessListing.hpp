#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

namespace Korvel {

/// By the name of the process.
using ProcessIds = std::unordered_map<std::string, pid_t>;

/// Returns the process ids of `names` from a listing as `ps aux` prints it. A line that contains a name
/// belongs to that process; the last such line counts. The id is 0 if its column is not a number.
ProcessIds parseProcessListing(std::string listing, const std::vector<std::string>& names);

}  // namespace Korvel
