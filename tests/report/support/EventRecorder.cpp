#include "EventRecorder.hpp"

#include <array>
#include <utility>

namespace ReportTest {

namespace {

std::string_view nameOf(Report::MemberType type) {
    using Report::MemberType;
    switch (type) {
        case MemberType::file:
            return "file";
        case MemberType::directory:
            return "directory";
        case MemberType::symbolicLink:
            return "link";
        case MemberType::hardLink:
            return "hard link";
        case MemberType::device:
            return "device";
        case MemberType::fifo:
            return "fifo";
        case MemberType::other:
            break;
    }
    return "other";
}

}  // namespace

std::string describe(const Report::LayerEnd& end) {
    constexpr std::array<std::string_view, 4> names{"", "cut: ", "altered: ", "not read: "};
    return std::string(names.at(static_cast<std::size_t>(end.integrity))) + end.reason;
}

void EventRecorder::beginMember(const Report::MemberHeader& header) {
    std::string line = std::string(nameOf(header.type)) + " " + header.name;
    if (!header.target.empty()) {
        line += " -> " + header.target;
    }
    if (header.type == Report::MemberType::file) {
        line += " " + std::to_string(header.size);
    }
    add(line);
    ++indent;
}

void EventRecorder::add(const std::string& line) {
    flush();
    writeLine(line);
    if (line.ends_with("{")) {
        ++indent;
    }
}

void EventRecorder::leave(const std::string& line, const Report::LayerEnd& end) {
    flush();
    --indent;
    const std::string reason = describe(end);
    add(reason.empty() ? line : line + " " + reason);
}

void EventRecorder::flush() {
    if (!pending.empty()) {
        writeLine('"' + std::exchange(pending, {}) + '"');
    }
}

void EventRecorder::writeLine(const std::string& line) {
    lines += std::string(2 * indent, ' ') + line + "\n";
}

}  // namespace ReportTest
