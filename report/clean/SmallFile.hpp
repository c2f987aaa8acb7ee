#pragma once

#include <cstddef>
#include <string>

namespace Report {

/// The contents of a file. Throws std::system_error if it cannot be read, or has more than `most` bytes.
std::string readSmallFile(const std::string& path, std::size_t most);

}  // namespace Report
