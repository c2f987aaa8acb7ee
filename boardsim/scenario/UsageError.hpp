#pragma once

#include <stdexcept>

namespace Boardsim {

/// An option, a key or a value is invalid. what() is the message for the user.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace Boardsim
