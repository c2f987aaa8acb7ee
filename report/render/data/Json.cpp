#include <chrono>
#include <nlohmann/json.hpp>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Names.hpp"
#include "PackageLoader.hpp"
#include "Renderers.hpp"
#include "TimeText.hpp"
#include "Utf8.hpp"

// A package can hold millions of log entries, so no object of JSON holds more than one part, value or entry.
// The objects are written as they are made, each on a line of its own.

namespace Report {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view schema = "urn:korvel-report:schema:1";  // the $id of the JSON Schema

/// Escapes every character that is not printable ASCII, so that nothing of a package acts on a terminal.
std::string written(const Json& json) {
    constexpr int onOneLine = -1;
    constexpr bool onlyAscii = true;
    return json.dump(onOneLine, ' ', onlyAscii, Json::error_handler_t::replace);
}

/// A list that is written item by item, each on a new line.
class List {
public:
    explicit List(std::ostream& stream) : out(&stream) { stream << '['; }

    /// Starts an item, which the caller writes.
    void next() {
        *out << (empty ? "\n" : ",\n");
        empty = false;
    }
    void add(const Json& item) {
        next();
        *out << written(item);
    }
    void close() { *out << (empty ? "]" : "\n]"); }

private:
    std::ostream* out;
    bool empty = true;
};

/// An object without its closing brace, for more keys.
std::string opened(const Json& json) {
    std::string text = written(json);
    text.pop_back();
    return text;
}

Json textOrNull(std::string_view text) {
    return text.empty() ? Json() : Json(validUtf8(text));
}

Json optionalText(const std::optional<std::string>& text) {
    return text ? Json(validUtf8(*text)) : Json();
}

template <typename Enumeration>
Json nameOrNull(const std::optional<Enumeration>& enumerator) {
    return enumerator ? Json(nameOf(*enumerator)) : Json();
}

/// In the form of RFC 3339, which has four digits for the year.
Json timeOrNull(const std::optional<Time>& time) {
    using std::chrono::sys_days;
    using namespace std::chrono_literals;
    if (!time || *time < sys_days(0y / 1 / 1) || *time >= sys_days(10000y / 1 / 1)) {
        return {};
    }
    std::string text = microsecondsText(*time);
    text.replace(text.find(' '), 1, 1, 'T');
    return text + 'Z';
}

Json limitOrNull(const std::optional<Limit>& limit) {
    return limit ? Json(optionOf(*limit)) : Json();
}

Json numberOrNull(const Number& number) {
    return std::visit(
        [](auto value) -> Json {
            if constexpr (std::is_same_v<decltype(value), std::monostate>) {
                return {};
            } else {
                return value;
            }
        },
        number);
}

/// A list of a few items, as one object.
template <typename Items, typename Convert>
Json listOf(const Items& items, Convert convert) {
    Json list = Json::array();
    for (const auto& item : items) {
        list.push_back(convert(item));
    }
    return list;
}

Json jsonOf(const Evidence& evidence) {
    return {{"source", validUtf8(evidence.source)}, {"text", validUtf8(evidence.text)}};
}

Json jsonOf(const std::vector<Evidence>& evidence) {
    return listOf(evidence, [](const Evidence& item) { return jsonOf(item); });
}

Json jsonOf(const LogEntry& entry) {
    return {{"time", timeOrNull(entry.time)},
            {"level", nameOrNull(entry.level)},
            {"tag", textOrNull(entry.tag)},
            {"text", validUtf8(entry.text)}};
}

Json jsonOf(const Overlap& overlap) {
    return {{"before", overlap.before ? jsonOf(*overlap.before) : Json()},
            {"after", overlap.after ? jsonOf(*overlap.after) : Json()}};
}

Json jsonOf(const Part& part) {
    return {{"name", validUtf8(part.name)},
            {"member", textOrNull(part.member)},
            {"expected", part.expected},
            {"state", nameOf(part.state)},
            {"cause", textOrNull(part.cause)},
            {"certainty", nameOrNull(part.certainty)},
            {"evidence", jsonOf(part.evidence)},
            {"reason", textOrNull(part.end.reason)},
            {"limit", limitOrNull(part.end.limit)},
            {"size", part.size},
            {"time", timeOrNull(part.time)},
            {"gzip", part.piece},
            {"package", part.package},
            {"log", part.log},
            {"text_size", part.textSize},
            {"invalid_bytes", part.invalidBytes},
            {"other_lines", part.otherLines},
            {"more_values", part.moreValues},
            {"overlaps", listOf(part.overlaps, [](const Overlap& overlap) { return jsonOf(overlap); })}};
}

Json jsonOf(const Finding& finding) {
    return {{"rule", validUtf8(finding.rule)},
            {"severity", nameOf(finding.severity)},
            {"part", textOrNull(finding.part)},
            {"meaning", validUtf8(finding.meaning)},
            {"advice", textOrNull(finding.advice)},
            {"evidence", jsonOf(finding.evidence)},
            {"count", finding.count}};
}

Json jsonOf(const Value& value) {
    return {{"part", validUtf8(value.part)},       {"title", validUtf8(value.title)},
            {"name", validUtf8(value.name)},       {"occurrence", value.occurrence},
            {"value", numberOrNull(value.number)}, {"text", validUtf8(value.text)}};
}

Json jsonOf(const Oddity& oddity) {
    return {{"member", validUtf8(oddity.member)}, {"what", validUtf8(oddity.what)}};
}

Json jsonOf(const Unread& unread) {
    return {{"member", textOrNull(unread.member)}, {"limit", optionOf(unread.limit)}};
}

std::string_view nameOf(SidecarState state) {
    switch (state) {
        case SidecarState::used:
            return "used";
        case SidecarState::absent:
            return "absent";
        case SidecarState::foreign:
            return "foreign";
        case SidecarState::unreadable:
            return "unreadable";
    }
    return {};
}

Json contentsOf(const Sidecar& sidecar) {
    Json keys = Json::object();
    for (const auto& [key, value] : sidecar.keys) {
        keys[validUtf8(key)] = validUtf8(value);
    }
    const auto probe = [](const auto& item) -> Json {
        return {{"name", validUtf8(item.first)}, {"result", validUtf8(item.second)}};
    };
    return {{"keys", keys},
            {"probes", listOf(sidecar.probes, probe)},
            {"standard_error", validUtf8(sidecar.standardError)}};
}

Json sidecarOf(const Package& package) {
    return {{"state", nameOf(package.sidecarState)},
            {"error", textOrNull(package.sidecarError)},
            {"contents", package.sidecar ? contentsOf(*package.sidecar) : Json()}};
}

Json headOf(const Package& package) {
    const std::string_view kind = keywordOf(package.kind);
    return {{"source", validUtf8(package.source)},
            {"sha256", textOrNull(package.sha256)},
            {"size", package.size},
            {"board", optionalText(package.board)},
            {"time", timeOrNull(package.time)},
            {"clock_unset", package.clockUnset},
            {"zone", optionalText(package.zone)},
            {"kind", textOrNull(kind)},
            {"verdict", nameOf(package.verdict)},
            {"reason", textOrNull(package.end.reason)},
            {"limit", limitOrNull(package.end.limit)},
            {"cause", textOrNull(package.cause)},
            {"certainty", nameOrNull(package.certainty)},
            {"evidence", jsonOf(package.evidence)},
            {"sidecar", sidecarOf(package)}};
}

/// Writes packages into one document.
class JsonWriter {
public:
    JsonWriter(std::ostream& stream, std::size_t lineLimit) : out(stream), maxLine(lineLimit) {}

    /// Writes a list of packages. The nested packages of a package are a list in its object, and so on.
    void write(std::span<const Package> packages) {
        struct Level {
            std::span<const Package> packages;
            List list;
        };
        std::vector<Level> levels;
        levels.push_back({packages, List(out)});
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.packages.empty()) {
                level.list.close();
                levels.pop_back();
                out << (levels.empty() ? "" : "}");
            } else {
                const Package& package = level.packages.front();
                level.packages = level.packages.subspan(1);
                level.list.next();
                writeContents(package);
                out << ",\n\"nested\":";
                levels.push_back({package.nested, List(out)});
            }
        }
    }

private:
    /// Writes the object of a package, without nested packages and without its closing brace.
    void writeContents(const Package& package) {
        out << opened(headOf(package)) << ",\n\"parts\":";
        writeParts(package);
        writeItems("findings", package.findings);
        writeItems("values", package.values);
        writeItems("oddities", package.oddities);
        writeItems("unread", package.unread);
        out << ",\n\"logs\":";
        writeLogs(package);
    }

    template <typename Items>
    void writeItems(std::string_view key, const Items& items) {
        out << ",\n\"" << key << "\":";
        List list(out);
        for (const auto& item : items) {
            list.add(jsonOf(item));
        }
        list.close();
    }

    void writeParts(const Package& package) {
        List list(out);
        for (const Part& part : package.parts) {
            list.next();
            out << opened(jsonOf(part)) << ",\"lines\":";
            writeLines(part);
            out << '}';
        }
        list.close();
    }

    void writeLines(const Part& part) {
        if (part.log || part.package || part.member.empty()) {
            out << "null";
            return;
        }
        List list(out);
        part.text.forEachLine(maxLine, [&](std::string_view line) {
            list.add(validUtf8(line));
            return true;
        });
        list.close();
    }

    void writeLogs(const Package& package) {
        List logs(out);
        for (const Part& part : package.parts) {
            if (part.log) {
                logs.next();
                out << opened({{"part", validUtf8(part.name)}}) << ",\"entries\":";
                writeEntries(package, part);
                out << '}';
            }
        }
        logs.close();
    }

    void writeEntries(const Package& package, const Part& part) {
        List list(out);
        forEachEntry(package, part, maxLine, [&](const LogEntry& entry) {
            list.add(jsonOf(entry));
            return true;
        });
        list.close();
    }

    std::ostream& out;
    std::size_t maxLine;
};

}  // namespace

void renderJson(std::ostream& out, std::span<const Package> packages, std::size_t maxLine) {
    const Json head = {{"schema", schema},
                       {"tool", {{"name", "korvel-report"}, {"version", KORVEL_VERSION}}}};
    out << opened(head) << ",\"packages\":";
    JsonWriter(out, maxLine).write(packages);
    out << "}\n";
}

}  // namespace Report
