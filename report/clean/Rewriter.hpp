#pragma once

#include <span>
#include <string>

#include "Mapping.hpp"
#include "TokenScanner.hpp"

namespace Report {

/// Writes replacements over the tokens of a text: of each address that it knows, and of each name. Every
/// token keeps its length and its form.
class Rewriter : public TokenHandler {
public:
    /// `replacements` must outlive the rewriter.
    explicit Rewriter(const Replacements& replacements) : table(replacements) {}

    /// Throws CleanRefusal if the replacement does not fit into this spelling.
    bool address(const FoundAddress& found, std::span<char> spelling) override;
    void word(std::span<char> text) override;

private:
    const Replacements& table;
    std::string foldedWord;
};

}  // namespace Report
