#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace Boardsim {

/// The Linux network interfaces that netfp_proxy manages. Empty at first.
class ManagedInterfaces {
public:
    /// Results of add().
    static constexpr std::uint32_t added = 0;
    static constexpr std::uint32_t managedAlready = 1;
    static constexpr std::uint32_t badName = 2;  ///< empty, or without a terminating zero

    /// Adds an interface. `field` is the whole field of the message, including zeros.
    std::uint32_t add(std::string_view field);

    /// A title and one line per interface; empty if there are no interfaces.
    std::string text() const;

private:
    std::set<std::string, std::less<>> names;
};

}  // namespace Boardsim
