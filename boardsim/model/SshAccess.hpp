#pragma once

#include <optional>
#include <string>

namespace Boardsim {

/// How users reach a board by SSH.
struct SshAccess {
    bool on = false;
    std::optional<std::string> authorizedKeys;  ///< text of the file with the users' public keys
    std::optional<std::string> hostKey;         ///< text of the file with the board's private key
};

}  // namespace Boardsim
