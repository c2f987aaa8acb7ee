#pragma once

#include <string>
#include <thread>

/// Removes a file once it has been read: opened for reading and closed again.
class RemovedWhenRead {
public:
    /// The file must exist at `path` now, be at `laterPath` when it is read, and be read before this object
    /// is destroyed.
    RemovedWhenRead(const std::string& path, const std::string& laterPath);
    RemovedWhenRead(const RemovedWhenRead&) = delete;
    RemovedWhenRead& operator=(const RemovedWhenRead&) = delete;
    RemovedWhenRead(RemovedWhenRead&&) = delete;
    RemovedWhenRead& operator=(RemovedWhenRead&&) = delete;
    ~RemovedWhenRead();

private:
    std::thread remover;
};
