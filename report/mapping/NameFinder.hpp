#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Report {

/// Finds names of users and hosts in texts, at the places that name them:
///
/// - prompts and remote paths: `user@host:` and `[user@host `
/// - the column USER or UID of a process listing
/// - the host in lines of syslog, with a time of either form: `Nov 22 08:30:33 HOST TAG[1]: ...`
///
/// Names are folded words with a letter. Fixed names of packages and systems are left out. Of a host name
/// with dots, all words but the last one are names.
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
    void takePrompt(std::string_view line, std::size_t at);
    void takeLogin(std::string_view line);
    void takeSyslog(std::string_view line);
    void takeListing(std::string_view line);
    void takeListedUser(std::string_view user);
    void takeWords(std::string_view text);

    /// The columns of a process listing, counted from 0.
    struct Listing {
        std::size_t user = 0;
        std::size_t process = 0;
    };
    static std::optional<Listing> listingOf(std::string_view heading);

    Add report;
    std::string open;                ///< the beginning of a line
    std::string lastHost;            ///< of syslog
    std::optional<Listing> listing;  ///< the one that the line may continue
};

}  // namespace Report
