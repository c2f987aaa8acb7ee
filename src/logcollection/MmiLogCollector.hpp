#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Configuration.hpp"
#include "LogCollector.hpp"

namespace Korvel {

/// Replies of the dispatchers' MMI services, for each selected instance.
class MmiLogCollector : public LogCollector {
public:
    enum Mode : unsigned { information = 1, statistics = 2, allModes = 3 };

    struct Entry {
        std::string command;  ///< the text sent, and the base name of the output file
        std::string title;    ///< the console's heading
    };

    static const std::string id;
    static const std::vector<Entry> mmiInfoCmds;
    static const std::vector<Entry> mmiStatsCmds;

    /// `mask`: the Mode bits to collect.
    MmiLogCollector(const std::string& workspaceDir, unsigned mask);

    /// False where the socket of an instance cannot be set up; later instances are then left out.
    bool collectLogs(bool printRequested) override;
    /// Prints the replies that are not empty.
    bool printOnConsole() override;
    /// Writes a file for each reply, empty ones included.
    bool dumpToFiles() override;

private:
    using Replies = std::unordered_map<std::string, std::string>;  // by command

    bool collectInstance(const std::string& name, const Configuration::Config& config);
    bool dumpInstance(const std::string& name);

    std::vector<Entry> commands;
    std::unordered_map<std::string, Replies> results;  // by instance name
};

}  // namespace Korvel
