#pragma once

#include <string>

#include "ByteSink.hpp"

namespace Report {

/// Writes to a descriptor, which it does not own.
class DescriptorSink : public ByteSink {
public:
    /// `name` is the file's, for messages.
    DescriptorSink(int descriptor, std::string name) : fd(descriptor), path(std::move(name)) {}

    void write(std::string_view bytes) override;

private:
    int fd;
    std::string path;
};

}  // namespace Report
