#pragma once

#include <map>
#include <mutex>
#include <string>

#include "SmLogClient.hpp"

namespace HostBoard {

/// The log clients of this process, one for each log. They are never freed and stay usable in both processes
/// after a fork.
class SmLogRegistry {
public:
    /// Returns the registry of this process, or null if fork handlers cannot be registered.
    static SmLogRegistry* instance();

    /// Returns the client of the log `name`, a file name in /dev/shm, or null if SharedLog::open() fails.
    SmLogClient* client(const std::string& name);

private:
    void beforeFork();
    void afterForkInParent();
    void afterForkInChild();

    std::mutex mutex;
    std::map<std::string, SmLogClient> clients;
};

}  // namespace HostBoard
