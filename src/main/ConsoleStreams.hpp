#pragma once

#include "DescriptorBuffer.hpp"

namespace Korvel {

/// Puts std::cout and std::cerr on buffers that signals do not harm, for as long as it lives.
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
    std::streambuf* const formerOut;
    std::streambuf* const formerErr;
};

}  // namespace Korvel
