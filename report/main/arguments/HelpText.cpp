#include "HelpText.hpp"

#include <cstddef>
#include <sstream>

#include "TextWriter.hpp"

namespace Report {

std::string helpText(const std::string& usage, const std::string& summary,
                     const std::vector<HelpGroup>& groups) {
    constexpr std::size_t labelWidth = 24;
    std::ostringstream out;
    TextWriter text(out, {});
    text.line("Usage: " + usage);
    text.line();
    text.paragraph(summary);
    for (const HelpGroup& group : groups) {
        text.heading(group.title + ":");
        for (const auto& [label, meaning] : group.rows) {
            text.labelled(label, meaning, labelWidth, TextWriter::indent);
        }
    }
    return out.str();
}

}  // namespace Report
