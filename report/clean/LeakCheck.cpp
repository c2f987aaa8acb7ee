#include "LeakCheck.hpp"

#include <utility>

#include "Letters.hpp"

namespace Report {

bool LeakFinder::address(const FoundAddress& found, std::span<char> spelling) {
    if (!first && mapping.isOriginal(found.address) && !mapping.isReplacement(found.address)) {
        first.emplace(spelling.begin(), spelling.end());
    }
    return Rewriter::address(found, spelling);
}

void LeakFinder::word(std::span<char> text) {
    if (!first && mapping.replacements().filter.mayContain({text.data(), text.size()})) {
        fold({text.data(), text.size()}, foldedWord);
        if (mapping.isOriginal(foldedWord) && !mapping.isReplacement(foldedWord)) {
            first.emplace(text.begin(), text.end());
        }
    }
    Rewriter::word(text);
}

LeakCheck::LeakCheck(const Mapping& mapping)
    : leaks(mapping), contents(leaks, [this](std::string_view bytes) { texts.addContents(bytes); }) {
}

void LeakCheck::leaveGzip(const LayerEnd& /*end*/) {
    contents.finish();
}

void LeakCheck::beginMember(const MemberHeader& header) {
    MemberHeader original = header;
    for (std::string* text : {&original.name, &original.owner, &original.group}) {
        *text = handleTokens(std::move(*text), leaks);
    }
    texts.addHeader(original);
}

void LeakCheck::data(std::string_view bytes) {
    contents.append(bytes);
}

void LeakCheck::endMember(const LayerEnd& /*end*/) {
    contents.finish();
}

}  // namespace Report
