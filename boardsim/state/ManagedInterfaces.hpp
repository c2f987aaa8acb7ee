#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace Boardsim {

/// The Linux network interfaces that netfp_proxy manages: none at first.
class ManagedInterfaces {
public:
    /// What add() gives.
    static constexpr std::uint32_t added = 0;
    static constexpr std::uint32_t managedAlready = 1;
    static constexpr std::uint32_t badName = 2;  ///< empty, or without its closing zero

    /// Takes the interface in. `field` is the message's, zeros included.
    std::uint32_t add(std::string_view field);

    /// A title and a line for each interface; empty where there is none.
    std::string text() const;

private:
    std::set<std::string, std::less<>> names;
};

}  // namespace Boardsim
