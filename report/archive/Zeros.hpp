#pragma once

#include <cstring>
#include <string_view>

namespace Report {

/// Whether all bytes are 0. True for no bytes.
inline bool allZeros(std::string_view bytes) {
    return bytes.empty() ||
           (bytes.front() == '\0' && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0);
}

}  // namespace Report
