#pragma once

#include <streambuf>
#include <vector>

#include "DescriptorSink.hpp"

namespace Report {

/// A stream buffer that writes to a descriptor, which it does not own. Throws std::system_error if a write
/// fails.
class DescriptorStream : public std::streambuf {
public:
    explicit DescriptorStream(int descriptor);

protected:
    int_type overflow(int_type character) override;
    int sync() override;

private:
    void writeOut();

    DescriptorSink sink;
    std::vector<char> buffer;
};

}  // namespace Report
