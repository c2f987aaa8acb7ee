#include "Prompt.hpp"

#include <algorithm>
#include <array>

#include "LineFields.hpp"

namespace Report {

namespace {

using namespace std::string_view_literals;

bool contains(const auto& words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
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

}  // namespace

std::optional<Prompt> promptAt(std::string_view line, std::size_t at) {
    std::size_t begin = at;
    while (begin > 0 && isNameByte(line[begin - 1])) {
        --begin;
    }
    std::size_t end = at + 1;
    while (end < line.size() && isNameByte(line[end])) {
        ++end;
    }
    const Prompt prompt{.user = line.substr(begin, at - begin), .host = line.substr(at + 1, end - at - 1)};
    const bool bracket = begin > 0 && line[begin - 1] == '[';
    const bool named = !prompt.user.empty() && !prompt.host.empty();
    return named && endsPrompt(line.substr(end), bracket) && !isInterface(prompt.user) && !isUnit(prompt.host)
               ? std::optional(prompt)
               : std::nullopt;
}

std::optional<Prompt> loginPrompt(std::string_view line) {
    constexpr std::string_view question = "login:";
    const std::string_view host = takeField(line);
    const bool asked = takeField(line) == question;
    const std::string_view user = takeField(line);
    const bool ends = takeField(line).empty();
    if (!asked || !ends || !isName(host) || !(user.empty() || isName(user))) {
        return std::nullopt;
    }
    return Prompt{.user = user, .host = host};
}

}  // namespace Report
