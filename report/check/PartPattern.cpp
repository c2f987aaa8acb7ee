#include "PartPattern.hpp"

#include <algorithm>
#include <cctype>

namespace Report {
namespace {

std::string expressionOf(std::string_view glob) {
    std::string expression = "(?s)";
    while (!glob.empty()) {
        const bool any = glob.starts_with("**");
        if (glob.front() == '*') {
            expression += any ? ".*" : "[^/]*";
        } else {
            const auto byte = static_cast<unsigned char>(glob.front());
            const bool special = byte < 0x80 && std::isalnum(byte) == 0;
            expression += special ? "\\" : "";
            expression += glob.front();
        }
        glob.remove_prefix(any ? 2 : 1);
    }
    return expression;
}

}  // namespace

PartPattern::PartPattern(const std::vector<std::string>& globs) {
    for (const std::string& glob : globs) {
        if (glob == "**") {
            everything = true;
        } else if (glob.find('*') == std::string::npos) {
            names.push_back(glob);
        } else {
            patterns.emplace_back(expressionOf(glob), TextPattern::Mode::anyCase);
        }
    }
}

bool PartPattern::fits(std::string_view name) const {
    return everything || std::ranges::find(names, name) != names.end() ||
           std::ranges::any_of(patterns, [&](const TextPattern& pattern) { return pattern.fitsWhole(name); });
}

}  // namespace Report
