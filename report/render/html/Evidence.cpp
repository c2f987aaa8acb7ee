#include "Evidence.hpp"

#include "Phrases.hpp"

namespace Report::Html {

void setEvidence(Fields& fields, const std::vector<Evidence>& evidence, std::string_view known) {
    constexpr std::size_t mostLines = 10;
    constexpr std::size_t longestLine = 400;
    constexpr std::size_t longestSource = 200;
    Rows rows;
    for (const Evidence& line : evidence) {
        if (rows.size() == mostLines) {
            break;
        }
        rows.push_back(
            Fields{}
                .set("source", line.source == known ? std::string{} : shortened(line.source, longestSource))
                .set("text", shortened(line.text, longestLine)));
    }
    fields.setList("evidence", std::move(rows));
}

}  // namespace Report::Html
