#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Template.hpp"

namespace Report::Html {

/// Sets a text of a rule or of a cause, at most `most` bytes of it. `name` becomes the condition whether
/// there is a text, and `name` + "Words" its pieces: those between backquotes are "code", the others "plain".
void setProse(Fields& fields, const std::string& name, std::string_view text, std::size_t most);

}  // namespace Report::Html
