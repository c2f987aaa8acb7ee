#pragma once

#include <array>
#include <string>

#include "TokenScanner.hpp"

namespace ReportTest {

/// Writes down the tokens of a text, with a blank between them: addresses as "ip4(10.0.0.1)", uncertain ones
/// as "ip4?(10.0.0.1)", words as they are. Takes uncertain addresses, or leaves them.
class TokenRecorder : public Report::TokenHandler {
public:
    explicit TokenRecorder(bool takeUncertain = true) : take(takeUncertain) {}

    bool address(const Report::FoundAddress& found, std::span<char> spelling) override {
        constexpr std::array kinds{"ip4", "ip6", "mac", "eui64"};
        const std::string kind = kinds[static_cast<std::size_t>(found.address.kind)];
        add(kind + (found.certain ? "(" : "?(") + std::string(spelling.begin(), spelling.end()) + ")");
        return take;
    }

    void word(std::span<char> text) override { add({text.begin(), text.end()}); }

    const std::string& text() const { return tokens; }

private:
    void add(const std::string& token) { tokens += (tokens.empty() ? "" : " ") + token; }

    bool take;
    std::string tokens;
};

}  // namespace ReportTest
