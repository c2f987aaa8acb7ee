#include "VerdictText.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <string_view>

#include "PartGroups.hpp"
#include "SafeText.hpp"
#include "Words.hpp"

namespace Report {
namespace {

std::string_view areNotAsTheyShouldBe(std::size_t count) {
    return count == 1 ? " is not as it should be." : " are not as they should be.";
}

/// A sentence about the parts that were not expected, after a blank, or nothing.
std::string othersText(const Package& package) {
    const std::size_t troubled = countTroubled(package, false);
    return troubled == 0 ? std::string()
                         : " " + counted(troubled, "other part").append(areNotAsTheyShouldBe(troubled));
}

/// The directories of the collectors that coverage keywords choose.
constexpr std::array<std::string_view, 3> collectors{"fuse", "mmi", "ti"};

bool isOf(std::string_view folder, const Part& part) {
    return part.name.starts_with(folder) && part.name.substr(folder.size()).starts_with('/');
}

/// A sentence about collectors without parts, after a blank, or nothing. Their directory is not in the
/// package, perhaps because they were not asked.
std::string absentText(const Package& package) {
    std::string names;
    for (const std::string_view folder : collectors) {
        if (std::ranges::none_of(
                package.parts, [folder](const Part& part) { return part.expected && isOf(folder, part); })) {
            names.append(names.empty() ? " No part of " : " or ").append(folder);
        }
    }
    return names.empty() ? names : names + " was expected.";
}

std::string troubledText(const Package& package) {
    const std::size_t expected = countExpected(package);
    const std::size_t troubled = countTroubled(package, true);
    if (expected == 0) {
        const bool foreign = std::ranges::none_of(package.parts, [](const Part& part) {
            return std::ranges::any_of(collectors,
                                       [&part](std::string_view folder) { return isOf(folder, part); });
        });
        return (foreign ? "No part was expected: the archive has none that korvel makes."
                        : "No part was expected.") +
               othersText(package);
    }
    if (troubled == 0) {
        return "Every expected part is present." + absentText(package) + othersText(package);
    }
    return std::to_string(troubled) + " of " +
           counted(expected, "expected part").append(areNotAsTheyShouldBe(troubled)) + othersText(package);
}

/// What a limit left out: the rest of the package, or some of its members.
std::string unreadText(const Package& package) {
    std::set<std::string_view> members;
    for (const Unread& unread : package.unread) {
        members.insert(unread.member);
    }
    if (package.end.integrity == Integrity::notRead || members.contains("")) {
        return "A limit of the reading was reached. Nothing is known of the rest.";
    }
    return "Because of a limit, " +
           (members.empty() ? "a package inside was"
                            : counted(members.size(), "member was", "members were")) +
           " not read completely.";
}

std::string cutText(const Package& package) {
    const bool isFile = !package.sha256.empty();
    return isFile && package.size == 0 ? "The file is empty."
                                       : "The file is not complete: " + forTerminal(package.end.reason) +
                                             ". Parts that are present can be used.";
}

}  // namespace

std::string meaningOf(const Package& package) {
    switch (package.verdict) {
        case Verdict::whole:
            return troubledText(package);
        case Verdict::incomplete:
            return countTroubled(package, true) == 0
                       ? "Every expected part is present, but a package inside is cut or altered."
                       : troubledText(package) + " Parts that are present can be used.";
        case Verdict::notFullyRead:
            return unreadText(package);
        case Verdict::cut:
            return cutText(package);
        case Verdict::altered:
            return "The file is not as it was made: " + forTerminal(package.end.reason) +
                   ". Do not rely on its contents.";
        case Verdict::unreadable:
            break;
    }
    return "The file cannot be read.";
}

}  // namespace Report
