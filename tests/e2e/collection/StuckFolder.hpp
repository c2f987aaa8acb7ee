#pragma once

#include <memory>
#include <string>

#include "Process.hpp"

/// A folder on a real file system in user space (FUSE) that leaves one kind of request unanswered, from
/// construction to destruction. It keeps its files. Needs the privilege to mount.
class StuckFolder {
public:
    /// `operation`: the unanswered requests, with the names in tests/support/StuckFileSystem.cpp.
    StuckFolder(std::string path, const std::string& operation);
    StuckFolder(const StuckFolder&) = delete;
    StuckFolder& operator=(const StuckFolder&) = delete;
    StuckFolder(StuckFolder&&) = delete;
    StuckFolder& operator=(StuckFolder&&) = delete;
    ~StuckFolder();

    /// Stops the server: it reads no request of any kind. A process that waits for it can still be killed.
    void stop() const;

    /// Lets the server read requests again.
    void resume() const;

    /// Kills the server. Processes that wait for it get an error. The folder is as before.
    void end();

private:
    std::string folder;
    std::unique_ptr<Process> server;
};
