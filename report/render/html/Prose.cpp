#include "Prose.hpp"

#include "Phrases.hpp"

namespace Report::Html {

void setProse(Fields& fields, const std::string& name, std::string_view text, std::size_t most) {
    const std::string shown = shortened(text, most);
    Rows words;
    std::size_t place = 0;
    while (place < shown.size()) {
        const std::size_t open = shown.find('`', place);
        const std::size_t close = open == std::string::npos ? open : shown.find('`', open + 1);
        if (close == std::string::npos) {
            words.push_back(Fields{}.set("plain", shown.substr(place)));
            break;
        }
        words.push_back(Fields{}.set("plain", shown.substr(place, open - place)));
        words.push_back(Fields{}.set("code", shown.substr(open + 1, close - open - 1)));
        place = close + 1;
    }
    const bool any = !words.empty();
    fields.set(name, any).set(name + "Words", std::move(words));
}

}  // namespace Report::Html
