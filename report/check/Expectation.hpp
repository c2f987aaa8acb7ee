#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Report {

/// A text that does not fit, such as an unknown coverage keyword. what() is one line for the user.
class ExpectationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Which parts a package should have. Without keywords, the folders in the package decide.
struct Expectation {
    std::optional<std::vector<std::string>> keywords;  ///< coverage keywords of --expect
};

/// Parses the argument of --expect, such as "dinf server". Throws ExpectationError for a word that is no
/// coverage keyword, and for a text without words.
Expectation parseExpectation(const std::string& text);

}  // namespace Report
