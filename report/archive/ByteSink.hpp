#pragma once

#include <string_view>

namespace Report {

/// Takes a stream of bytes, such as a file that is written.
class ByteSink {
public:
    ByteSink() = default;
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;
    ByteSink(ByteSink&&) = delete;
    ByteSink& operator=(ByteSink&&) = delete;
    virtual ~ByteSink() = default;

    /// Takes all bytes. Throws std::system_error if writing fails.
    virtual void write(std::string_view bytes) = 0;
};

}  // namespace Report
