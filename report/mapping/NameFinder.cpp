#include "NameFinder.hpp"

#include <algorithm>
#include <array>
#include <span>

#include "ByteClass.hpp"
#include "FixedNames.hpp"
#include "Letters.hpp"
#include "SyslogHost.hpp"
#include "TextStream.hpp"

namespace Report {

namespace {

using namespace std::string_view_literals;

/// A line is read in pieces of this size if it is longer.
constexpr std::size_t longestLine = std::size_t{64} << 10;

bool hasLetter(std::string_view word) {
    return std::ranges::any_of(word, [](char byte) { return isOf(byte, letterByte | highByte); });
}

/// Passes on the words of a text that can be names.
class NameWords : public TokenHandler {
public:
    explicit NameWords(const NameFinder::Add& add) : report(add) {}

    bool address(const FoundAddress& /*found*/, std::span<char> /*spelling*/) override { return false; }
    void word(std::span<char> text) override {
        const std::string name = folded({text.data(), text.size()});
        if (hasLetter(name) && !isFixedName(name)) {
            report(name);
        }
    }

private:
    const NameFinder::Add& report;
};

}  // namespace

void NameFinder::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        const std::string_view piece = bytes.substr(0, end);
        const bool complete = end < bytes.size();
        if (complete && open.empty()) {
            takeLine(piece);
        } else {
            open += piece;
            takeOpenLine(complete);
        }
        bytes.remove_prefix(complete ? end + 1 : end);
    }
}

/// Takes the collected line, if it is complete or long. The end of a long line is read again, so that no name
/// is lost.
void NameFinder::takeOpenLine(bool complete) {
    if (!complete && open.size() < longestLine) {
        return;
    }
    takeLine(open);
    open.erase(0, complete ? open.size() : open.size() - 2 * longestWord);
}

void NameFinder::finish() {
    takeLine(open);
    open.clear();
    lastHost.clear();
    listing.reset();
}

void NameFinder::takeLine(std::string_view line) {
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    takePrompts(line);
    takeSyslog(line);
    if (const std::optional<std::string_view> user = listing.userIn(line)) {
        takeListedUser(*user);
    }
}

void NameFinder::takePrompts(std::string_view line) {
    for (std::size_t at = line.find('@'); at != std::string_view::npos; at = line.find('@', at + 1)) {
        takePrompt(promptAt(line, at));
    }
    takePrompt(loginPrompt(line));
}

void NameFinder::takePrompt(const std::optional<Prompt>& prompt) {
    if (prompt) {
        takeUser(prompt->user);
        takeHost(prompt->host);
    }
}

void NameFinder::takeSyslog(std::string_view line) {
    const std::string_view host = syslogHost(line);
    if (host != lastHost) {
        lastHost = host;
        takeHost(host);
    }
}

/// A long name ends with a plus sign in some listings; the rest of it is left out.
void NameFinder::takeListedUser(std::string_view user) {
    const bool cut = user.ends_with('+');
    user.remove_suffix(cut ? 1 : 0);
    if (!cut || !beginsFixedName(folded(user))) {
        takeUser(user);
    }
}

/// The end of a domain name remains if it says nothing of anyone: that of a country, or a usual one.
void NameFinder::takeHost(std::string_view text) {
    constexpr std::array usual{"com"sv,   "net"sv,         "org"sv,  "edu"sv,      "gov"sv,     "int"sv,
                               "local"sv, "localdomain"sv, "lan"sv,  "internal"sv, "home"sv,    "arpa"sv,
                               "test"sv,  "example"sv,     "info"sv, "biz"sv,      "invalid"sv, "mil"sv};
    const std::size_t dot = text.rfind('.');
    if (dot != std::string_view::npos) {
        const std::string end = folded(text.substr(dot + 1));
        const bool country =
            end.size() == 2 && std::ranges::all_of(end, [](char byte) { return isOf(byte, letterByte); });
        text = country || std::ranges::find(usual, end) != usual.end() ? text.substr(0, dot) : text;
    }
    takeWords(text);
}

void NameFinder::takeWords(std::string_view text) {
    NameWords words(report);
    handleTokens(std::string(text), words);
}

}  // namespace Report
