#pragma once

#include <string>

/// Fills a disk (a file system in memory) as long as this object lives.
class FullDisk {
public:
    /// `directory` is on the disk.
    explicit FullDisk(const std::string& directory);
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    FullDisk(FullDisk&&) = delete;
    FullDisk& operator=(FullDisk&&) = delete;
    ~FullDisk();

private:
    const std::string filler;
};
