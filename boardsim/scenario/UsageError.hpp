#pragma once

#include <stdexcept>

namespace Boardsim {

/// An option, a scenario's key or one of their values that makes no sense; what() is one line for the user.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace Boardsim
