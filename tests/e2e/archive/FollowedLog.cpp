#include "FollowedLog.hpp"

// Both functions read runtime.log first. A rotation in between shows as duplicate entries.

bool FollowedLog::hasNewest() {
    const std::string runtime = files.runtime();
    const std::string middle = files.middle();
    const std::string newest = (middle.empty() ? files.startup() : middle) + runtime;
    return runtime.size() < threshold && !newest.empty() && log.text().ends_with(newest);
}

bool FollowedLog::hasAll() {
    const std::string runtime = files.runtime();
    const std::string archived = files.startup() + files.middle() + runtime;
    return runtime.size() < threshold && !archived.empty() && archived == log.text();
}
