#pragma once

#include <map>
#include <mutex>
#include <string>

#include "SmLogClient.hpp"

namespace HostBoard {

/// The clients of this process, one for each log that it has asked for. They are never freed, and each
/// survives a fork in both processes.
class SmLogRegistry {
public:
    /// The one registry of this process, or null when forks cannot be watched for.
    static SmLogRegistry* instance();

    /// The client of the log `name`, a file name below /dev/shm, or null where SharedLog::open() fails.
    SmLogClient* client(const std::string& name);

private:
    void beforeFork();
    void afterForkInParent();
    void afterForkInChild();

    std::mutex mutex;
    std::map<std::string, SmLogClient> clients;
};

}  // namespace HostBoard
