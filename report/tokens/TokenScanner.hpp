#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "AddressSyntax.hpp"

namespace Report {

/// Takes the tokens of a text, in their order. It may write over the bytes of a token if digits remain
/// digits, letters a to f, and other letters other letters: the scan then finds the same tokens in the new
/// text.
class TokenHandler {
public:
    TokenHandler() = default;
    TokenHandler(const TokenHandler&) = delete;
    TokenHandler& operator=(const TokenHandler&) = delete;
    TokenHandler(TokenHandler&&) = delete;
    TokenHandler& operator=(TokenHandler&&) = delete;
    virtual ~TokenHandler() = default;

    /// Returns whether the bytes are this address. If an uncertain one is not, they are scanned as words, and
    /// another address can begin inside them.
    [[nodiscard]] virtual bool address(const FoundAddress& found, std::span<char> spelling) = 0;
    /// A whole word: letters, digits, `-` and `_`, no address in it, at most longestWord bytes.
    virtual void word(std::span<char> text) = 0;
};

/// Words with more bytes are no names.
constexpr std::size_t longestWord = 255;

/// Finds addresses and words in a text that arrives in pieces. It looks at each byte about once, since a
/// package holds many megabytes of text.
class TokenScanner {
public:
    /// `tokens` must outlive the scanner.
    explicit TokenScanner(TokenHandler& tokens) : handler(tokens) {}

    /// The bytes before the scan that must remain in front of the text.
    static constexpr std::size_t lookBack = 32;

    /// Scans `whole` from the place `from`; what is before it was scanned earlier. Returns the place where
    /// the next scan continues, with more text: the end of the text if it is the `last` piece.
    std::size_t scan(std::span<char> whole, std::size_t from, bool last);

private:
    void step();
    void stepRun();
    void stepColon();
    void stepHigh();
    void endWord();
    bool isPrefixed(Run run) const;
    bool mayBeAddress(Run run, bool hex) const;
    bool takeAddressIn(Run run, bool hex);
    bool takeAddress(const FoundAddress& found);
    std::optional<FoundAddress> addressIn(Run run, bool hex) const;
    std::optional<FoundAddress> groupsAt(Run run) const;
    bool canBeIp6(Run run) const;
    std::optional<FoundAddress> ip4Behind(std::size_t end) const;
    void joinWord(std::size_t end);
    char byteAt(std::size_t at) const { return at < view.size() ? view[at] : '\0'; }

    TokenHandler& handler;
    std::span<char> text;
    std::string_view view;  ///< the same text
    std::size_t place = 0;
    std::size_t word = 0;  ///< beginning of the word at `place`
    bool inWord = false;
    bool broken = false;  ///< the word holds an address, or is too long
};

}  // namespace Report
