#pragma once

#include <stdexcept>
#include <string>

namespace Report {

/// Why a package was not cleaned or restored. what() is one line for the user.
class CleanRefusal : public std::runtime_error {
public:
    /// The exit statuses of the program.
    enum Status : int {
        notClean = 1,  ///< something is not read or not followed, or an original has no replacement
        damaged = 2,   ///< the package is cut or altered
        unusable = 3,  ///< a file cannot be read or written, or is not what it should be
    };

    CleanRefusal(Status why, const std::string& reason) : std::runtime_error(reason), exitStatus(why) {}

    Status status() const noexcept { return exitStatus; }

private:
    Status exitStatus;
};

/// Throws the exception that is being handled as a CleanRefusal.
[[noreturn]] void throwAsRefusal();

}  // namespace Report
