#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "LogEntry.hpp"
#include "LogForms.hpp"
#include "PackageVisitor.hpp"
#include "PackedText.hpp"
#include "Sidecar.hpp"
#include "Time.hpp"
#include "Value.hpp"

namespace Report {

/// The state of a part. `notRead` is for a part beyond a limit of the reader: never a fault of the board.
enum class State : std::uint8_t { present, empty, missing, cut, stale, unreadable, notRead };

enum class Certainty : std::uint8_t { certain, likely, unknown };

enum class Severity : std::uint8_t { error, warning, note };

enum class Verdict : std::uint8_t { whole, incomplete, notFullyRead, cut, altered, unreadable };

/// The kinds of packages, by the keywords of korvel that make them.
enum class Kind : std::uint8_t { unknown, plain, trs, sup, postMortem, shutdown };

/// What supports a statement: a line of a part, or of the sidecar.
struct Evidence {
    std::string source;  ///< name of a part, or "sidecar"
    std::string text;
};

/// Where a log's entries were overwritten before the archive read them.
struct Overlap {
    std::optional<LogEntry> before;
    std::optional<LogEntry> after;
};

/// One part of a package: a member that is a file, or an expected file that is not there.
struct Part {
    std::string name;    ///< the member's name without "./" and without ".log", ".log.gz" or ".tgz":
                         ///< "mmi/sfn/HeapStats"
    std::string member;  ///< the member's name as it is in the archive; empty if there is no such member
    bool expected = false;
    State state = State::present;
    std::string cause;  ///< likely cause of every state but present, in words
    std::optional<Certainty> certainty;
    std::vector<Evidence> evidence;  ///< for the state; of a present part, signs that an earlier run wrote it

    std::uint64_t size = 0;          ///< of the member as it is in the archive, in bytes
    std::optional<Time> time;        ///< of the member
    LayerEnd end;                    ///< how the member or its .gz layer ended
    bool piece = false;              ///< the member is gzip; `text` holds it inflated
    bool package = false;            ///< the member is a package: its contents are in Package::nested
    bool log = false;                ///< the text has log entries
    PackedText text;                 ///< empty if the loader was told not to keep it
    std::uint64_t textSize = 0;      ///< of the text (inflated), in bytes, also if it is not kept
    std::string tail;                ///< the last bytes of the text, at most 256, also if it is not kept
    std::uint64_t invalidBytes = 0;  ///< bytes of the text that are not UTF-8
    std::size_t otherLines = 0;     ///< lines that are neither values, titles, blank nor log entries; 0 for a
                                    ///< text that is neither a table of values nor a log
    std::size_t moreValues = 0;     ///< values beyond the number that is kept of a part
    std::vector<Overlap> overlaps;  ///< of an archive's log
};

/// A result of a rule.
struct Finding {
    std::string rule;  ///< its identifier
    Severity severity = Severity::note;
    std::string part;  ///< where it was found; empty for the package as a whole
    std::string meaning;
    std::string advice;              ///< what to do
    std::vector<Evidence> evidence;  ///< the first few lines or values
    std::size_t count = 1;           ///< lines or values that fit the rule
};

/// A member that is not what a package of korvel contains: a link, a device, a name with "..", an absolute
/// name, a duplicate name. It is never followed.
struct Oddity {
    std::string member;
    std::string what;
};

/// Something that a limit of the reader left out.
struct Unread {
    std::string member;  ///< empty for the rest of the package
    Limit limit = Limit::bytes;
};

/// A package as plain data. The order of parts, values and nested packages is that of the archive; missing
/// parts are last. Texts from the package are bytes as they came: whoever shows them makes them safe first.
struct Package {
    std::string source;      ///< path of the file, "-", or the member's name for a nested package
    std::string sha256;      ///< empty for a nested package
    std::uint64_t size = 0;  ///< of the file, in bytes
    std::optional<std::string> board;
    std::optional<Time> time;
    bool clockUnset = false;  ///< the time is before 2010 or in the future
    Kind kind = Kind::unknown;
    Verdict verdict = Verdict::unreadable;
    LayerEnd end;                        ///< of the archive itself
    std::string cause;                   ///< likely cause if the archive is cut or altered, in words
    std::optional<Certainty> certainty;  ///< of the cause
    std::vector<Evidence> evidence;      ///< for the cause
    std::optional<std::string> zone;     ///< in which local times in logs are read; unknown: UTC is taken
    std::set<std::string, std::less<>> folders;  ///< folders of the package, the upper two levels: "mmi/iwf"
    std::shared_ptr<const LogForms> forms;       ///< further forms of log lines, or null
    std::vector<Part> parts;
    std::vector<Finding> findings;
    std::vector<Value> values;
    std::vector<Package> nested;
    std::vector<Oddity> oddities;
    std::vector<Unread> unread;
    SidecarState sidecarState = SidecarState::absent;
    std::string sidecarError;  ///< why a sidecar is foreign or unreadable
    std::optional<Sidecar> sidecar;
};

}  // namespace Report
