#include "MemberName.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace Report {
namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// Removes the first of `endings` that `text` has and that leaves something.
template <typename Endings>
std::string_view withoutEnding(std::string_view text, const Endings& endings) {
    const auto found = std::ranges::find_if(endings, [text](std::string_view ending) {
        return text.size() > ending.size() && text.ends_with(ending);
    });
    return found == endings.end() ? text : text.substr(0, text.size() - found->size());
}

/// Removes the first component of a path, with its slash, and returns it.
std::string_view takeComponent(std::string_view& path) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view component = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    return component;
}

/// Folders of the archive and of its earlier runs: "archive", "archive.1".
bool isArchiveFolder(std::string_view name) {
    constexpr std::string_view archive = "archive";
    if (!name.starts_with(archive)) {
        return false;
    }
    name.remove_prefix(archive.size());
    return name.empty() ||
           (name.size() > 1 && name.front() == '.' && std::ranges::all_of(name.substr(1), isDigit));
}

bool isArchivedLog(std::string_view normal) {
    std::string_view rest = normal;
    if (!isArchiveFolder(takeComponent(rest))) {
        return false;
    }
    const std::string_view source = takeComponent(rest);
    return (source == "dispatcher" || source == "syslib") && rest.find('/') == std::string_view::npos &&
           (rest.ends_with(".log") || rest.ends_with(".log.gz"));
}

struct KnownText {
    std::string_view name;  ///< of a member, or of a folder with its slash: then of all members below it
    TextForm form;
};

constexpr std::array knownTexts{
    // a member before its folder
    KnownText{"fuse/HistoryLog.log", TextForm::log},
    KnownText{"fuse/", TextForm::table},
    KnownText{"mmi/", TextForm::table},
    KnownText{"ti/syslib_sm_log.log", TextForm::log},
    KnownText{"ti/", TextForm::table},
    KnownText{"linux/system.log", TextForm::log},
    KnownText{"linux/cmdline.log", TextForm::plain},
    KnownText{"linux/interfaces.log", TextForm::plain},
    KnownText{"linux/mounts.log", TextForm::plain},
    KnownText{"linux/processes.log", TextForm::plain},
    KnownText{"linux/uptime.log", TextForm::plain},
    KnownText{"linux/", TextForm::plainOrLog},
};

/// "netfp_logs_YYMMDD_HHMMSS"
bool isPlainPackage(std::string_view stem) {
    constexpr std::string_view pattern = "netfp_logs_######_######";  // # is a digit
    return std::ranges::equal(stem, pattern, [](char byte, char expected) {
        return expected == '#' ? isDigit(byte) : byte == expected;
    });
}

}  // namespace

std::string normalName(std::string_view member) {
    std::string normal;
    while (!member.empty()) {
        const std::string_view component = takeComponent(member);
        if (component.empty() || component == ".") {
            continue;
        }
        normal += normal.empty() ? "" : "/";
        normal += component;
    }
    return normal;
}

std::string_view partName(std::string_view normal) {
    constexpr std::array<std::string_view, 3> endings{".log.gz", ".log", ".tgz"};
    const std::size_t folder = normal.size() - baseName(normal).size();
    return normal.substr(0, folder + withoutEnding(baseName(normal), endings).size());
}

TextForm formOf(std::string_view normal) {
    if (isArchivedLog(normal)) {
        return TextForm::archivedLog;
    }
    const auto* const known = std::ranges::find_if(knownTexts, [normal](const KnownText& row) {
        return row.name.ends_with('/') ? normal.starts_with(row.name) : normal == row.name;
    });
    return known == knownTexts.end() ? TextForm::tableOrLog : known->form;
}

std::string_view oddName(std::string_view member) {
    if (member.starts_with('/')) {
        return "absolute name";
    }
    for (std::string_view rest = member; !rest.empty();) {
        if (takeComponent(rest) == "..") {
            return "name with ..";
        }
    }
    return {};
}

std::string_view baseName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string_view stemOf(std::string_view path) {
    constexpr std::array<std::string_view, 1> earlier{".previous"};
    constexpr std::array<std::string_view, 3> endings{".tgz", ".tar.gz", ".gz"};
    return withoutEnding(withoutEnding(baseName(path), earlier), endings);
}

Kind kindOfFile(std::string_view stem) {
    struct FixedName {
        std::string_view stem;
        Kind kind;
    };
    constexpr std::array fixedNames{
        FixedName{"netfp_logs", Kind::trs},
        FixedName{"netfp_logs_sup", Kind::sup},
        FixedName{"netfp_logs_post_mortem", Kind::postMortem},
        FixedName{"netfp_logs_shutdown", Kind::shutdown},
    };
    const auto* const fixed = std::ranges::find(fixedNames, stem, &FixedName::stem);
    if (fixed != fixedNames.end()) {
        return fixed->kind;
    }
    return isPlainPackage(stem) ? Kind::plain : Kind::unknown;
}

}  // namespace Report
