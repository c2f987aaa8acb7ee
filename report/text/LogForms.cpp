#include "LogForms.hpp"

#include <algorithm>
#include <cctype>

namespace Report {
namespace {

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
    return lower;
}

}  // namespace

void LogForms::add(const std::string& pattern, const Levels& levels) {
    Form form{.pattern = TextPattern(pattern, TextPattern::Mode::anyCase), .levels = levels};
    form.time = form.pattern.groupNamed("time");
    form.level = form.pattern.groupNamed("level");
    form.tag = form.pattern.groupNamed("tag");
    form.text = form.pattern.groupNamed("text");
    if (form.time == 0 || form.text == 0) {
        throw PatternError("the groups `time` and `text` are needed");
    }
    forms.push_back(std::move(form));
}

std::optional<LogPieces> LogForms::find(std::string_view line) const {
    std::vector<std::string_view> groups;
    for (const Form& form : forms) {
        if (!form.pattern.split(line, groups)) {
            continue;
        }
        LogPieces pieces{.time = groups[form.time], .level = {}, .tag = {}, .text = groups[form.text]};
        pieces.tag = form.tag == 0 ? std::string_view() : groups[form.tag];
        const auto level = form.levels.find(form.level == 0 ? std::string() : lowerCase(groups[form.level]));
        pieces.level = level == form.levels.end() ? std::nullopt : std::optional(level->second);
        return pieces;
    }
    return std::nullopt;
}

}  // namespace Report
