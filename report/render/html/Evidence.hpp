#pragma once

#include <string_view>
#include <vector>

#include "Package.hpp"
#include "Template.hpp"

namespace Report::Html {

/// Sets what the partial template "evidence" needs. A line whose source is `known` does not name it again.
void setEvidence(Fields& fields, const std::vector<Evidence>& evidence, std::string_view known = {});

}  // namespace Report::Html
