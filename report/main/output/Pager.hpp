#pragma once

#include <string>

#include <sys/types.h>

#include "UniqueFd.hpp"

namespace Report {

/// The pager if the environment names none.
constexpr const char* usualPager = "less";

/// The command that shows long texts: KORVEL_PAGER, else PAGER, else the usual pager. Empty if the user wants
/// none: "cat" or an empty variable.
std::string pagerCommand();

/// A pager at the terminal, which reads what is written to its descriptor.
class Pager {
public:
    /// Starts a shell command. Without LESS in the environment, less gets the options -FRX. From here on,
    /// SIGINT and SIGPIPE do not end this process: the pager belongs to the user. Throws std::system_error if
    /// the command cannot be started.
    explicit Pager(const std::string& command);
    /// Ends the pager's input and waits for its end.
    ~Pager();
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;
    Pager(Pager&&) = delete;
    Pager& operator=(Pager&&) = delete;

    int descriptor() const { return input.get(); }

private:
    Base::UniqueFd input;
    pid_t process = -1;
};

}  // namespace Report
