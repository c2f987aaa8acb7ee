#include "Description.hpp"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <vector>

#include "Budget.hpp"
#include "EventRecorder.hpp"
#include "Names.hpp"

namespace ReportTest {
namespace {

using Report::Package;
using Report::Part;
using Report::Value;

std::string orDash(const std::optional<std::string>& text) {
    return text.value_or("-");
}

std::string endOf(const Report::LayerEnd& end) {
    const std::string text = describe(end);
    return text.empty() ? "" : " [" + text + "]";
}

std::string cellOf(const Value& value) {
    constexpr std::array types{"text ", "", "unsigned ", "decimal "};
    return value.name + (value.occurrence == 1 ? "" : " (" + std::to_string(value.occurrence) + ")") + " = " +
           types.at(value.number.index()) + value.text;
}

/// A line for the values under each title.
std::string rowsOf(const std::vector<Value>& values) {
    std::string rows;
    for (std::size_t index = 0; index < values.size(); ++index) {
        const Value& value = values[index];
        const bool same =
            index > 0 && values[index - 1].part == value.part && values[index - 1].title == value.title;
        rows += same ? "; " : (index > 0 ? "\n" : "");
        rows +=
            same ? "" : "values of " + value.part + ", " + (value.title.empty() ? "-" : value.title) + ": ";
        rows += cellOf(value);
    }
    return rows + (values.empty() ? "" : "\n");
}

std::string rowOf(const Part& part) {
    std::ostringstream out;
    out << "part " << part.name << " (" << part.member << ") " << part.size << " bytes, "
        << Report::nameOf(part.state) << ", " << describe(part.time) << endOf(part.end);
    const struct {
        const char* name;
        bool set;
    } flags[] = {{"piece", part.piece}, {"package", part.package}, {"log", part.log}};
    for (const auto& [name, set] : flags) {
        out << (set ? ", " : "") << (set ? name : "");
    }
    const struct {
        const char* name;
        std::uint64_t count;
    } counts[] = {{"of text", part.textSize == part.size ? 0 : part.textSize},
                  {"invalid", part.invalidBytes},
                  {"other lines", part.otherLines},
                  {"more values", part.moreValues}};
    for (const auto& [name, count] : counts) {
        if (count > 0) {
            out << ", " << count << ' ' << name;
        }
    }
    out << '\n';
    for (const auto& [before, after] : part.overlaps) {
        out << "  overlap between " << (before ? describe(*before) : "-") << " and "
            << (after ? describe(*after) : "-") << '\n';
    }
    return out.str();
}

const char* nameOf(Report::SidecarState state) {
    const char* const names[] = {"used", "absent", "foreign", "unreadable"};
    return names[static_cast<std::size_t>(state)];
}

}  // namespace

std::string describe(const std::optional<Report::Time>& time) {
    if (!time) {
        return "-";
    }
    const auto day = std::chrono::floor<std::chrono::days>(*time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(*time - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    std::string result = text;
    if (const auto fraction = clock.subseconds().count(); fraction != 0) {
        std::snprintf(text, sizeof text, ".%06d", static_cast<int>(fraction));
        result += text;
        result.erase(result.find_last_not_of('0') + 1);
    }
    return result;
}

std::string describe(const Report::LogEntry& entry) {
    std::string text = entry.time ? describe(entry.time) + " " : "";
    text += entry.level ? std::string(Report::nameOf(*entry.level)) + " " : "";
    return text + (entry.tag.empty() ? "" : entry.tag + ": ") + entry.text;
}

std::string describe(const Package& package) {
    std::ostringstream out;
    out << "package " << package.source << ", board " << orDash(package.board) << ", "
        << describe(package.time) << (package.clockUnset ? " (clock not set)" : "") << ", kind "
        << Report::keywordOf(package.kind) << ", zone " << orDash(package.zone) << ", sidecar "
        << nameOf(package.sidecarState) << (package.sidecarError.empty() ? "" : ": " + package.sidecarError)
        << endOf(package.end) << '\n';
    out << "folders";
    for (const std::string& folder : package.folders) {
        out << ' ' << folder;
    }
    out << '\n';
    for (const Part& part : package.parts) {
        out << rowOf(part);
    }
    out << rowsOf(package.values);
    for (const auto& [member, what] : package.oddities) {
        out << "odd " << member << ": " << what << '\n';
    }
    for (const auto& [member, limit] : package.unread) {
        out << "unread " << (member.empty() ? "the rest" : member) << ": " << Report::optionOf(limit) << '\n';
    }
    for (const Package& nested : package.nested) {
        out << "nested " << describe(nested);
    }
    return out.str();
}

}  // namespace ReportTest
