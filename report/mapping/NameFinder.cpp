#include "NameFinder.hpp"

#include <algorithm>
#include <array>
#include <span>

#include "ByteClass.hpp"
#include "FixedNames.hpp"
#include "Letters.hpp"
#include "TextStream.hpp"
#include "Timestamp.hpp"

namespace Report {

namespace {

using namespace std::string_view_literals;

/// A line is read in pieces of this size if it is longer.
constexpr std::size_t longestLine = std::size_t{64} << 10;

bool contains(const auto& words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

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

/// Whether a byte belongs to the names in a prompt.
bool isNameByte(char byte) {
    return isOf(byte, alnumByte | joinerByte | highByte) || byte == '.';
}

/// Whether a prompt can go on with this text behind the host. `bracket` says that one stands before the user.
bool endsPrompt(std::string_view text, bool bracket) {
    constexpr std::string_view ends = ":#$%>";
    return (!text.empty() && ends.find(text.front()) != std::string_view::npos) ||
           text.starts_with(bracket ? " "sv : " ~"sv);
}

/// Names of network interfaces in listings such as "eth0@if5:".
bool isInterface(std::string_view name) {
    constexpr std::array stems{"eth"sv, "if"sv,    "veth"sv, "vlan"sv, "bond"sv, "br"sv,
                               "lo"sv,  "dummy"sv, "wlan"sv, "tap"sv,  "tun"sv,  "macvlan"sv};
    const std::size_t stem = std::min(name.find_first_of("0123456789."), name.size());
    return contains(stems, name.substr(0, stem)) &&
           name.find_first_not_of("0123456789.", stem) == std::string_view::npos;
}

/// Names of systemd's units, such as "user@1000.service:".
bool isUnit(std::string_view host) {
    constexpr std::array suffixes{"service"sv, "socket"sv, "target"sv, "timer"sv, "mount"sv,
                                  "slice"sv,   "scope"sv,  "device"sv, "path"sv,  "swap"sv};
    const std::size_t dot = host.rfind('.');
    return dot != std::string_view::npos && contains(suffixes, host.substr(dot + 1));
}

/// Removes the first field of a line, and the blanks around it, and returns it.
std::string_view takeField(std::string_view& line) {
    constexpr std::string_view blanks = " \t";
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    const std::string_view field = line.substr(0, line.find_first_of(blanks));
    line.remove_prefix(field.size());
    return field;
}

std::optional<std::string_view> fieldAt(std::string_view line, std::size_t column) {
    for (std::size_t index = 0; index < column; ++index) {
        static_cast<void>(takeField(line));
    }
    const std::string_view field = takeField(line);
    return field.empty() ? std::nullopt : std::optional(field);
}

bool isNumber(std::string_view field) {
    return std::ranges::all_of(field, [](char byte) { return isOf(byte, digitByte); });
}

/// Whether a text has the form of `pattern`, in which 0 is a digit and each other byte itself.
bool hasForm(std::string_view text, std::string_view pattern) {
    return text.size() >= pattern.size() &&
           std::ranges::equal(text.substr(0, pattern.size()), pattern, [](char byte, char form) {
               return form == '0' ? isOf(byte, digitByte) : byte == form;
           });
}

/// Removes the time of a syslog line, of the older or the newer form. Returns false if there is none.
bool skipTime(std::string_view& line) {
    if (hasForm(line, "0000-00-00T00:00:00")) {
        static_cast<void>(takeField(line));
        return true;
    }
    return takeSyslogTime(line).has_value();
}

bool isLevel(std::string_view word) {
    constexpr std::array levels{"trace"sv,   "debug"sv, "info"sv,  "notice"sv, "warn"sv,
                                "warning"sv, "err"sv,   "error"sv, "crit"sv,   "critical"sv,
                                "alert"sv,   "emerg"sv, "fatal"sv, "panic"sv};
    return contains(levels, folded(word));
}

/// Whether a line of syslog has a host in front of this text: a tag that ends with a colon, a facility and a
/// level such as "daemon.info", or a text of the logging daemon itself.
bool followsHost(std::string_view text) {
    constexpr std::array ownTexts{" -- MARK --"sv, " last message repeated "sv};
    if (std::ranges::any_of(ownTexts, [text](std::string_view own) { return text.starts_with(own); })) {
        return true;
    }
    const std::string_view field = takeField(text);
    const std::size_t dot = field.find('.');
    return field.ends_with(':') || (dot != std::string_view::npos && isLevel(field.substr(dot + 1)));
}

/// The host of a line of syslog; empty if there is none. The newer form has a version behind the priority.
std::string_view hostOf(std::string_view line) {
    if (line.starts_with('<')) {
        line.remove_prefix(std::min(line.find('>'), line.size() - 1) + 1);
    }
    const bool versioned = line.starts_with("1 ");
    line.remove_prefix(versioned ? 2 : 0);
    if (!skipTime(line)) {
        return {};
    }
    const std::string_view host = takeField(line);
    const bool isHost = (versioned || followsHost(line)) && std::ranges::all_of(host, isNameByte);
    return isHost && !isLevel(host) ? host : std::string_view();
}

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
    takeLogin(line);
    takeSyslog(line);
    takeListing(line);
}

void NameFinder::takePrompts(std::string_view line) {
    for (std::size_t at = line.find('@'); at != std::string_view::npos; at = line.find('@', at + 1)) {
        takePrompt(line, at);
    }
}

void NameFinder::takePrompt(std::string_view line, std::size_t at) {
    const std::size_t userEnd = at;
    std::size_t begin = userEnd;
    while (begin > 0 && isNameByte(line[begin - 1])) {
        --begin;
    }
    std::size_t end = at + 1;
    while (end < line.size() && isNameByte(line[end])) {
        ++end;
    }
    const std::string_view user = line.substr(begin, userEnd - begin);
    const std::string_view host = line.substr(at + 1, end - at - 1);
    const bool bracket = begin > 0 && line[begin - 1] == '[';
    if (endsPrompt(line.substr(end), bracket) && !user.empty() && !host.empty() && !isInterface(user) &&
        !isUnit(host)) {
        takeWords(user);
        takeHost(host);
    }
}

void NameFinder::takeSyslog(std::string_view line) {
    const std::string_view host = hostOf(line);
    if (host != lastHost) {
        lastHost = host;
        takeHost(host);
    }
}

std::optional<NameFinder::Listing> NameFinder::listingOf(std::string_view heading) {
    if (heading.find("PID") == std::string_view::npos) {
        return std::nullopt;
    }
    std::optional<std::size_t> user;
    std::optional<std::size_t> process;
    std::size_t column = 0;
    for (std::string_view field = takeField(heading); !field.empty(); field = takeField(heading)) {
        if (isNumber(field)) {
            return std::nullopt;
        }
        if (field == "USER" || field == "UID") {
            user = column;
        } else if (field == "PID") {
            process = column;
        }
        ++column;
    }
    return user && process ? std::optional<Listing>({*user, *process}) : std::nullopt;
}

void NameFinder::takeListing(std::string_view line) {
    if (const std::optional<Listing> begun = listingOf(line)) {
        listing = begun;
        return;
    }
    if (!listing) {
        return;
    }
    const std::optional<std::string_view> process = fieldAt(line, listing->process);
    if (!process || !isNumber(*process)) {
        listing.reset();
        return;
    }
    takeListedUser(*fieldAt(line, listing->user));
}

/// A long name ends with a plus sign in some listings; the rest of it is left out.
void NameFinder::takeListedUser(std::string_view user) {
    if (user.ends_with('+')) {
        user.remove_suffix(1);
        if (beginsFixedName(folded(user))) {
            return;
        }
    }
    takeWords(user);
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
        text = country || contains(usual, end) ? text.substr(0, dot) : text;
    }
    takeWords(text);
}

/// Takes the names of a line such as "bts-17 login: alice".
void NameFinder::takeLogin(std::string_view line) {
    constexpr std::string_view question = "login:";
    const std::string_view host = takeField(line);
    if (!std::ranges::all_of(host, isNameByte) || takeField(line) != question) {
        return;
    }
    const std::string_view user = takeField(line);
    if (takeField(line).empty() && std::ranges::all_of(user, isNameByte)) {
        takeHost(host);
        takeWords(user);
    }
}

void NameFinder::takeWords(std::string_view text) {
    NameWords words(report);
    handleTokens(std::string(text), words);
}

}  // namespace Report
