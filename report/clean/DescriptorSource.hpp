#pragma once

#include <string>

#include "ByteSource.hpp"
#include "UniqueFd.hpp"

namespace Report {

/// Reads a file once, and its beginning twice: that can be looked at first.
class DescriptorSource : public ByteSource {
public:
    /// Opens `path`; "-" is standard input. Throws std::system_error.
    explicit DescriptorSource(const std::string& path);

    /// Up to `size` bytes that the next read() begins with. Fewer only if the file is shorter.
    const std::string& peek(std::size_t size);

    std::size_t read(std::span<char> buffer) override;

private:
    std::string name;
    Base::UniqueFd file;
    std::string start;  ///< bytes that were looked at
};

}  // namespace Report
