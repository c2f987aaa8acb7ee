#pragma once

#include <string>
#include <string_view>

namespace Report {

/// Text from a package for a terminal: control characters, terminal escapes and bytes that are not UTF-8
/// become visible escapes such as \x1b; so do characters that reorder text (bidirectional controls). Tabs
/// remain, line feeds only with `lines`.
std::string forTerminal(std::string_view bytes, bool lines = false);

}  // namespace Report
