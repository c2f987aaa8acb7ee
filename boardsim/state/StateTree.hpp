#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "LiveTraffic.hpp"

namespace Boardsim {

/// The state files of a dispatcher, ROOT/INSTANCE/NAME. On a board, the dispatcher computes them when they
/// are read.
class StateTree {
public:
    /// Writes the files of the dispatcher `instanceName` ("iwf", "sfn"), except those of its statistics.
    /// Without traffic, the numbers are invented. Throws std::system_error.
    StateTree(const std::string& instanceName, std::shared_ptr<LiveTraffic> boardTraffic,
              const std::string& root = "/tmp/fuse");

    /// The texts of these files by name, without `tracing_on`. Without a state, the numbers are invented.
    static std::map<std::string, std::string> texts(const std::string& instance,
                                                    const DispatcherState* state);

    /// Replaces the files with the present numbers. Throws std::system_error, and then leaves a file as it
    /// was.
    void refresh() const;

private:
    void write(void (*writeFile)(const std::string& path, std::string_view text)) const;

    std::string instance;
    std::string directory;
    std::shared_ptr<LiveTraffic> traffic;
};

}  // namespace Boardsim
