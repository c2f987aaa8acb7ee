#pragma once

#include <string>
#include <thread>

/// Removes a file once it has been opened for reading and closed again so many times.
class RemovedWhenRead {
public:
    /// The file must exist, and must be read that often before this object is destroyed.
    RemovedWhenRead(const std::string& path, int times);
    RemovedWhenRead(const RemovedWhenRead&) = delete;
    RemovedWhenRead& operator=(const RemovedWhenRead&) = delete;
    RemovedWhenRead(RemovedWhenRead&&) = delete;
    RemovedWhenRead& operator=(RemovedWhenRead&&) = delete;
    ~RemovedWhenRead();

private:
    std::thread remover;
};
