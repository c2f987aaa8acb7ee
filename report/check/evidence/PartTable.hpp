#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Report {

/// Where a part comes from. The enumerators up to `ti` are collectors of korvel that coverage keywords
/// select.
enum class Collector : std::uint8_t { fuse, mmi, ti, archive, linuxLogs, postMortem, unknown };

enum class Dispatcher : std::uint8_t { none, iwf, sfn };

inline constexpr std::string_view dispatcherNames[] = {"", "iwf", "sfn"};

/// The name of a dispatcher in part names: "iwf" or "sfn".
constexpr std::string_view nameOf(Dispatcher dispatcher) {
    return dispatcherNames[static_cast<std::size_t>(dispatcher)];
}

/// Where korvel collects a part: once, once for each dispatcher, or only on a board without SFN dispatcher.
enum class Scope : std::uint8_t { board, dispatcher, iwfAlone };

/// One row of the table of parts that korvel collects.
struct KnownPart {
    Collector collector;
    std::string_view leaf;     ///< last component of the part's name
    std::string_view keyword;  ///< narrowest coverage keyword that collects it
    Scope scope;
};

/// All parts that coverage keywords select, in the order in which korvel writes them, except that it writes
/// the dumps first.
std::span<const KnownPart> knownParts();

/// The name of a known part of a dispatcher, such as "mmi/sfn/HeapStats". `dispatcher` is none for a part of
/// the board.
std::string nameOf(const KnownPart& part, Dispatcher dispatcher);

/// The folder of a collector in the package: "fuse".
std::string_view folderOf(Collector collector);

/// The coverage keywords that a keyword stands for: "dall" for dlog, dinf and dstat, "slog" for itself. Empty
/// if the word is no coverage keyword.
std::span<const std::string_view> narrowKeywordsOf(std::string_view keyword);

/// All coverage keywords, in the order of korvel-package(5), separated by blanks.
std::string coverageKeywordList();

/// What the name of a part tells.
struct PartPlace {
    Collector collector = Collector::unknown;
    Dispatcher dispatcher = Dispatcher::none;
    std::string_view leaf;
    const KnownPart* known = nullptr;  ///< null for a part that korvel's coverage keywords do not select

    /// Whether the part is the dump of a NetFP process. Then `leaf` is the name of the process.
    bool isDump() const { return known != nullptr && collector == Collector::ti && known->keyword != "slog"; }
    /// Whether the part is one of the two logs in shared memory.
    bool isSharedLog() const {
        return known != nullptr && (known->keyword == "dlog" || known->keyword == "slog");
    }
};

/// The place points into `name`.
PartPlace placeOf(std::string_view name);

/// The position of a part in the order in which one run of korvel writes its files, for the parts of fuse,
/// mmi, ti, the post-mortem copy and the Linux logs. These logs all have the same position. Parts of other
/// places have the position -1.
int writeOrderOf(const PartPlace& place);

}  // namespace Report
