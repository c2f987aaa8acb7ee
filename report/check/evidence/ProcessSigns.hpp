#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Package.hpp"
#include "PartTable.hpp"

namespace Report {

/// The name of a dispatcher's process: "sfn_dispatcher".
std::string processOf(Dispatcher dispatcher);

/// Lines in the logs of a package which show that a process was in trouble: unhealthy heartbeats, and lines
/// that name the process and its end. Of a large log, only the end is read.
class ProcessSigns {
public:
    explicit ProcessSigns(const Package& package);

    /// The last line about this process of each log, at most two lines.
    std::vector<Evidence> evidenceFor(std::string_view process) const;

private:
    void read(const Part& part);

    std::map<std::string, std::vector<Evidence>, std::less<>> lines;  // by process
};

}  // namespace Report
