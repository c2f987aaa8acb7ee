#include "SyslogHost.hpp"

#include <algorithm>
#include <array>

#include "ByteClass.hpp"
#include "Letters.hpp"
#include "LineFields.hpp"
#include "Timestamp.hpp"

namespace Report {

namespace {

using namespace std::string_view_literals;

/// Whether a text has the form of `pattern`, in which 0 is a digit and each other byte itself.
bool hasForm(std::string_view text, std::string_view pattern) {
    return text.size() >= pattern.size() &&
           std::ranges::equal(text.substr(0, pattern.size()), pattern, [](char byte, char form) {
               return form == '0' ? isOf(byte, digitByte) : byte == form;
           });
}

/// Removes the time of a line, of the older or the newer form. Returns false if there is none.
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
    return std::ranges::find(levels, folded(word)) != levels.end();
}

/// Whether a line has a host in front of this text: a tag that ends with a colon, a facility and a level such
/// as "daemon.info", or a text of the logging daemon itself.
bool followsHost(std::string_view text) {
    constexpr std::array ownTexts{" -- MARK --"sv, " last message repeated "sv};
    if (std::ranges::any_of(ownTexts, [text](std::string_view own) { return text.starts_with(own); })) {
        return true;
    }
    const std::string_view field = takeField(text);
    const std::size_t dot = field.find('.');
    return field.ends_with(':') || (dot != std::string_view::npos && isLevel(field.substr(dot + 1)));
}

}  // namespace

std::string_view syslogHost(std::string_view line) {
    if (line.starts_with('<')) {
        line.remove_prefix(std::min(line.find('>'), line.size() - 1) + 1);
    }
    // The newer form has a version behind the priority.
    const bool versioned = line.starts_with("1 ");
    line.remove_prefix(versioned ? 2 : 0);
    if (!skipTime(line)) {
        return {};
    }
    const std::string_view host = takeField(line);
    return isName(host) && (versioned || followsHost(line)) && !isLevel(host) ? host : std::string_view();
}

}  // namespace Report
