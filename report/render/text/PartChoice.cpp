#include "PartChoice.hpp"

#include <algorithm>

#include "MemberName.hpp"

namespace Report {

std::string fullName(std::string_view prefix, const Part& part) {
    return std::string(prefix) + part.name;
}

std::string nestedPrefix(std::string_view prefix, const Package& nested) {
    return std::string(prefix).append(partName(normalName(nested.source))).append("/");
}

bool selects(std::string_view choice, std::string_view name) {
    const std::string normal = normalName(choice);
    const std::string_view wanted = partName(normal);
    return name == wanted ||
           (name.size() > wanted.size() && name.starts_with(wanted) && name[wanted.size()] == '/');
}

// NOLINTNEXTLINE(misc-no-recursion): --max-depth bounds the recursion
bool selectsAny(std::string_view choice, const Package& package, std::string_view prefix) {
    return std::ranges::any_of(package.parts,
                               [&](const Part& part) { return selects(choice, fullName(prefix, part)); }) ||
           // NOLINTNEXTLINE(misc-no-recursion)
           std::ranges::any_of(package.nested, [&](const Package& nested) {
               return selectsAny(choice, nested, nestedPrefix(prefix, nested));
           });
}

}  // namespace Report
