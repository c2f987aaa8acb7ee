#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Configuration.hpp"
#include "LogCollector.hpp"

namespace Korvel {

/// Collects replies of the dispatchers' MMI services, for each selected instance.
class MmiLogCollector : public LogCollector {
public:
    enum Mode : unsigned { information = 1, statistics = 2, allModes = 3 };

    struct Entry {
        std::string command;  ///< text of the request, and base name of the output file
        std::string title;    ///< heading on the console
    };

    static const std::string id;
    static const std::vector<Entry> mmiInfoCmds;
    static const std::vector<Entry> mmiStatsCmds;

    /// `mask`: the Mode bits to collect.
    MmiLogCollector(const std::string& workspaceDir, unsigned mask);

    /// Returns false if the socket of an instance cannot be set up; later instances are then skipped.
    bool collectLogs(bool printRequested) override;
    /// Prints non-empty replies.
    bool printOnConsole() override;
    /// Writes a file for each reply, even if it is empty.
    bool dumpToFiles() override;

private:
    using Replies = std::unordered_map<std::string, std::string>;  // by command

    bool collectInstance(const std::string& name, const Configuration::Config& config);
    bool dumpInstance(const std::string& name);

    std::vector<Entry> commands;
    std::unordered_map<std::string, Replies> results;  // by instance name
};

}  // namespace Korvel
