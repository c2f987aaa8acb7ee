#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Boardsim {

/// A message's text field, of which the zeros are padding.
template <std::size_t size>
std::string fieldText(const char (&field)[size]) {
    const std::string_view text(field, size);
    return std::string(text.substr(0, text.find('\0')));
}

/// An Ethernet address as people write it.
std::string macText(const std::uint8_t (&mac)[6]);

/// What a datagram to the NetFP master asks for, and what one of its answers says, in a few words.
std::string masterRequestText(std::string_view datagram);
std::string masterResponseText(std::string_view datagram);

}  // namespace Boardsim
