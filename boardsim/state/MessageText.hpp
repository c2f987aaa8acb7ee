#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Boardsim {

/// The text in a message field that is padded with zeros.
template <std::size_t size>
std::string fieldText(const char (&field)[size]) {
    const std::string_view text(field, size);
    return std::string(text.substr(0, text.find('\0')));
}

/// As in 01:00:5e:00:00:01.
std::string macText(const std::uint8_t (&mac)[6]);

/// Short descriptions of a request to the NetFP master and of a response, for the log.
std::string masterRequestText(std::string_view datagram);
std::string masterResponseText(std::string_view datagram);

}  // namespace Boardsim
