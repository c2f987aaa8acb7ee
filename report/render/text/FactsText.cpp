#include "FactsText.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Names.hpp"
#include "SafeText.hpp"
#include "TimeText.hpp"
#include "Words.hpp"

namespace Report {
namespace {

constexpr std::size_t labelWidth = 9;  // columns of "SHA-256" and a gap

std::string timeOf(const Package& package) {
    if (!package.time) {
        return "unknown";
    }
    return secondsText(*package.time) + (package.clockUnset ? ": the board's clock was not set" : "");
}

std::string kindText(const Package& package) {
    const std::string_view keyword = keywordOf(package.kind);
    return keyword.empty() ? "unknown" : std::string(keyword);
}

/// Keys of the sidecar as `text`, or nothing if the sidecar does not have the key.
std::string keyOf(const Sidecar& sidecar, std::string_view key, std::string_view before) {
    const std::string* const value = sidecar.find(key);
    return value == nullptr ? "" : std::string(before) + forTerminal(*value);
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

void writeRun(TextWriter& text, const Sidecar& sidecar) {
    text.labelled("Run",
                  "korvel" + keyOf(sidecar, "korvel", " ") + keyOf(sidecar, "command", ": ") +
                      keyOf(sidecar, "status", ", exit status "),
                  labelWidth);
    const std::size_t lines = linesOf(sidecar.standardError).size();
    text.labelled(
        "Sidecar",
        lines == 0 ? "korvel complained of nothing" : "korvel complained: " + counted(lines, "line"),
        labelWidth);
}

void writeSidecar(TextWriter& text, const Package& package) {
    constexpr std::string_view unknown = ": what korvel complained of is unknown";
    if (package.sidecarState == SidecarState::used && package.sidecar) {
        writeRun(text, *package.sidecar);
    } else if (package.sidecarState == SidecarState::absent) {
        text.labelled("Sidecar", std::string("none").append(unknown), labelWidth);
    } else {
        text.labelled("Sidecar",
                      "not used (" + forTerminal(package.sidecarError) + ")" + std::string(unknown),
                      labelWidth);
    }
}

}  // namespace

void writeFacts(TextWriter& text, const Package& package) {
    text.labelled("Board", package.board ? forTerminal(*package.board) : "unknown", labelWidth);
    text.labelled("Time", timeOf(package), labelWidth);
    text.labelled("Kind", kindText(package), labelWidth);
    if (!package.sha256.empty()) {
        text.labelled("Size", sizeText(package.size), labelWidth);
        text.labelled("SHA-256", package.sha256, labelWidth);
        text.labelled("Zone",
                      package.zone ? forTerminal(*package.zone) : "unknown: local times are taken as UTC",
                      labelWidth);
        writeSidecar(text, package);
    }
}

void writeComplaints(TextWriter& text, const Package& package, std::size_t most) {
    if (!package.sidecar || package.sidecar->standardError.empty()) {
        return;
    }
    text.heading("What korvel complained of");
    text.rows(linesOf(package.sidecar->standardError), most, [&](std::string_view line) {
        text.line(std::string(TextWriter::indent, ' ') +
                  cutTo(text.width() - TextWriter::indent, forTerminal(line)));
    });
}

}  // namespace Report
