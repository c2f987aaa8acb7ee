#pragma once

#include <vector>

#include "Package.hpp"
#include "Template.hpp"

namespace Report::Html {

/// Sets what the partial template "evidence" needs.
void setEvidence(Fields& fields, const std::vector<Evidence>& evidence);

}  // namespace Report::Html
