#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Report {

/// The names in a prompt. They point into the line.
struct Prompt {
    std::string_view user;
    std::string_view host;
};

/// The prompt or remote path around the sign `@` at `at`: `user@host:`, `user@host ~`, `[user@host `.
/// Interfaces and systemd's units, which look alike, are none.
std::optional<Prompt> promptAt(std::string_view line, std::size_t at);

/// The names of a line such as `bts-17 login: alice`. The user may be empty.
std::optional<Prompt> loginPrompt(std::string_view line);

}  // namespace Report
