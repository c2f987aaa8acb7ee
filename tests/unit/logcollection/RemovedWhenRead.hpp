#pragma once

#include <string>
#include <thread>

/// Removes a file after it was read, that is, opened for reading and closed.
class RemovedWhenRead {
public:
    /// The file must exist at `path` now and at `laterPath` when it is read. It must be read before this
    /// object is destroyed.
    RemovedWhenRead(const std::string& path, const std::string& laterPath);
    RemovedWhenRead(const RemovedWhenRead&) = delete;
    RemovedWhenRead& operator=(const RemovedWhenRead&) = delete;
    RemovedWhenRead(RemovedWhenRead&&) = delete;
    RemovedWhenRead& operator=(RemovedWhenRead&&) = delete;
    ~RemovedWhenRead();

private:
    std::thread remover;
};
