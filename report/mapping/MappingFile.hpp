#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Mapping.hpp"

namespace Report {

/// The text of a mapping, which is a file of the user and never part of a package:
///
///     korvel-report map 1
///     # a comment; empty lines are ignored, too
///     ip4 10.0.0.1 17.4.6.2
///     ip6 fe80:0:0:0:211:22ff:fe33:4455 ab41:0:0:0:603:9cff:fe18:7240
///     mac 00:11:22:33:44:55 40:03:9c:18:72:40
///     eui64 00:11:22:ff:fe:33:44:55 40:03:9c:ff:fe:18:72:40
///     name bts-17 dzq-52
///
/// The number in the first line is the version of the format; another version is refused. Each other line is
/// a kind, an original and its replacement, with a blank between them. Names have small letters. Of a name,
/// each byte that is no ASCII letter, digit, `-` or `_` is `%` and two hexadecimal digits. The lines are
/// sorted.
std::string writeMapping(const Mapping& mapping);

/// Throws std::invalid_argument with the line's number and the reason for a text that is no mapping, and for
/// lines that contradict each other.
Mapping parseMapping(std::string_view text);

}  // namespace Report
