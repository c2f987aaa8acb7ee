#include "Expectation.hpp"

#include <sstream>

#include "PartTable.hpp"

namespace Report {

Expectation parseExpectation(const std::string& text) {
    std::vector<std::string> keywords;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (narrowKeywordsOf(word).empty()) {
            throw ExpectationError("unknown coverage keyword '" + word + "'; the keywords are " +
                                   coverageKeywordList());
        }
        keywords.push_back(word);
    }
    if (keywords.empty()) {
        throw ExpectationError("a coverage keyword is missing; the keywords are " + coverageKeywordList());
    }
    return {keywords};
}

}  // namespace Report
