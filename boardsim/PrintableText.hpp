#pragma once

#include <string>
#include <string_view>

/// Bytes that somebody sent, as text for a line on a terminal: bytes other than printable ASCII as \xNN, and
/// what goes on for too long cut.
std::string printable(std::string_view bytes);
