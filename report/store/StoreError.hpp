#pragma once

#include <stdexcept>

namespace Report {

/// A store that cannot be opened, read or written. what() is one line for the user, with the file.
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace Report
