#pragma once

#include <system_error>

namespace Report {

/// A sidecar that the user names, and that cannot be read. what() is "PATH: REASON".
class SidecarError : public std::system_error {
public:
    using std::system_error::system_error;
};

}  // namespace Report
