#include "Rewriter.hpp"

#include <string>

#include "CleanRefusal.hpp"
#include "Letters.hpp"
#include "Spelling.hpp"

namespace Report {

namespace {

[[noreturn]] void refuse(std::span<const char> spelling) {
    throw CleanRefusal(CleanRefusal::notClean, "the replacement in the map does not fit into the spelling " +
                                                   std::string(spelling.begin(), spelling.end()));
}

}  // namespace

bool Rewriter::address(const FoundAddress& found, std::span<char> spelling) {
    const auto entry = table.addresses.find(found.address);
    if (entry == table.addresses.end()) {
        return false;
    }
    if (!respell(spelling, entry->second)) {
        refuse(spelling);
    }
    return true;
}

void Rewriter::word(std::span<char> text) {
    const std::string_view word{text.data(), text.size()};
    if (!table.filter.mayContain(word)) {
        return;
    }
    fold(word, foldedWord);
    const auto entry = table.names.find(foldedWord);
    if (entry != table.names.end() && !rewriteWord(text, entry->second)) {
        refuse(text);
    }
}

}  // namespace Report
