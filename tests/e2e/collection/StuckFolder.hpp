#pragma once

#include <memory>
#include <string>

#include "Process.hpp"

/// A folder behind a real file system in user space (FUSE) that leaves one kind of request unanswered, from
/// construction to destruction. It has the files that were there before. Needs the privilege to mount.
class StuckFolder {
public:
    /// `operation`: the requests that are swallowed, as tests/support/StuckFileSystem.cpp names them.
    StuckFolder(const std::string& path, const std::string& operation);

    /// The server reads no further request, of whatever kind: whoever waits for it can still be killed.
    void stop() const;

    /// The server reads requests again.
    void resume() const;

    /// The server is killed. Everybody who waits for it gets an error.
    void end();

private:
    std::unique_ptr<Process> server;
};
