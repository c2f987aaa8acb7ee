#pragma once

#include <memory>
#include <string>

#include "ByteSource.hpp"

namespace Report {

/// A package that can be read several times: a file, or standard input, which is kept in memory. Regular
/// files, pipes and FIFOs are accepted. The package is never unpacked to disk.
class PackageSource {
public:
    /// Opens `path`; "-" is standard input. Throws std::system_error if that fails, for a directory too, and
    /// std::length_error if standard input holds more than `mostBytes` bytes.
    PackageSource(std::string path, std::size_t mostBytes);

    /// "-" for standard input.
    const std::string& path() const { return name; }

    /// A new stream from the first byte. The source must outlive it.
    std::unique_ptr<ByteSource> open() const;

private:
    struct Content;  ///< a descriptor, or the bytes of standard input

    std::string name;
    std::shared_ptr<const Content> content;
};

}  // namespace Report
