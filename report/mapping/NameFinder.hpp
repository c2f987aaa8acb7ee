#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ProcessListing.hpp"
#include "Prompt.hpp"

namespace Report {

/// Finds names of users and hosts in texts, at the places that name them:
///
/// - prompts and remote paths (see Prompt)
/// - the column USER or UID of a process listing (see ProcessListing)
/// - the host in lines of syslog (see syslogHost)
///
/// Names are folded words with a letter. Fixed names of packages and systems are left out. Of a host name
/// with dots, a usual end such as `.com` or `.de` is none.
class NameFinder {
public:
    using Add = std::function<void(const std::string&)>;

    /// `add` receives each name, often more than once.
    explicit NameFinder(Add add) : report(std::move(add)) {}

    /// A text in pieces of any size.
    void append(std::string_view bytes);
    void finish();

    /// A text that is known to name a user or a group, or a host.
    void takeUser(std::string_view text) { takeWords(text); }
    void takeHost(std::string_view text);

private:
    void takeLine(std::string_view line);
    void takeOpenLine(bool complete);
    void takePrompts(std::string_view line);
    void takePrompt(const std::optional<Prompt>& prompt);
    void takeSyslog(std::string_view line);
    void takeListedUser(std::string_view user);
    void takeWords(std::string_view text);

    Add report;
    std::string open;      ///< the beginning of a line
    std::string lastHost;  ///< of syslog
    ProcessListing listing;
};

}  // namespace Report
