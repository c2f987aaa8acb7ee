#pragma once

#include <string_view>

namespace Report {

/// Whether a folded word is never replaced: a fixed name of packages (folders, parts, endings, closing lines,
/// programs of the board), or a user, group or host that most systems have.
bool isFixedName(std::string_view word);

/// Whether a fixed name begins with a folded text.
bool beginsFixedName(std::string_view text);

}  // namespace Report
