#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "ByteSource.hpp"
#include "UniqueFd.hpp"

namespace Report {

/// A package to read: a regular file, a pipe or a FIFO. The package is never unpacked to disk.
class PackageSource {
public:
    /// Opens `path`; "-" is standard input. Throws std::system_error if that fails, for a directory too.
    explicit PackageSource(std::string path);

    /// Keeps what comes from a pipe in memory, so that it can be read several times. Call it before open().
    /// Throws std::length_error if it holds more than `mostBytes` bytes, and std::system_error.
    void keepPipe(std::size_t mostBytes);

    /// "-" for standard input.
    const std::string& path() const { return name; }

    /// The path, in words for standard input.
    const std::string& shownPath() const { return shown; }

    /// Whether it is a regular file, which can be read several times.
    bool isFile() const { return begin.has_value(); }

    /// A new stream from the first byte, of a pipe that is not kept the only one. The source must outlive it.
    std::unique_ptr<ByteSource> open() const;

private:
    std::string name;
    std::string shown;
    Base::UniqueFd file;
    std::optional<off_t> begin;                      ///< where the package begins in a regular file
    std::optional<std::vector<std::string>> chunks;  ///< of a pipe that is kept
};

}  // namespace Report
