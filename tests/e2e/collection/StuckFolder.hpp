#pragma once

#include <memory>
#include <string>

#include "Process.hpp"

/// A folder behind a real file system in user space (FUSE) that leaves one kind of request unanswered, from
/// construction to destruction. It has the files that were there before. Needs the privilege to mount.
class StuckFolder {
public:
    /// `operation`: the requests that are swallowed, as tests/support/StuckFileSystem.cpp names them.
    StuckFolder(std::string path, const std::string& operation);
    StuckFolder(const StuckFolder&) = delete;
    StuckFolder& operator=(const StuckFolder&) = delete;
    StuckFolder(StuckFolder&&) = delete;
    StuckFolder& operator=(StuckFolder&&) = delete;
    ~StuckFolder();

    /// The server reads no further request, of whatever kind: whoever waits for it can still be killed.
    void stop() const;

    /// The server reads requests again.
    void resume() const;

    /// Kills the server, whoever waits for it gets an error. The folder is what it was before.
    void end();

private:
    std::string folder;
    std::unique_ptr<Process> server;
};
