#pragma once

#include "DescriptorBuffer.hpp"

namespace Korvel {

/// Redirects std::cout and std::cerr to buffers that survive interrupted writes (see DescriptorBuffer), from
/// construction to destruction.
class ConsoleStreams {
public:
    ConsoleStreams();
    ConsoleStreams(const ConsoleStreams&) = delete;
    ConsoleStreams& operator=(const ConsoleStreams&) = delete;
    ConsoleStreams(ConsoleStreams&&) = delete;
    ConsoleStreams& operator=(ConsoleStreams&&) = delete;
    ~ConsoleStreams();

private:
    DescriptorBuffer out;
    DescriptorBuffer err;
    std::streambuf* const previousOut;
    std::streambuf* const previousErr;
};

}  // namespace Korvel
