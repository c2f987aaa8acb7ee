#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Letters.hpp"
#include "Spelling.hpp"
#include "TextStream.hpp"

using Report::Address;
using Report::AddressKind;

namespace {

/// Takes the address of a text, or writes one over it.
class OneAddress : public Report::TokenHandler {
public:
    explicit OneAddress(std::optional<Address> other = {}) : replacement(other) {}

    bool address(const Report::FoundAddress& token, std::span<char> spelling) override {
        found = token.address;
        fits = replacement && Report::respell(spelling, *replacement);
        return true;
    }
    void word(std::span<char> /*text*/) override {}

    std::optional<Address> replacement;
    Address found;
    bool fits = false;
};

Address addressIn(const std::string& text) {
    OneAddress handler;
    Report::handleTokens(text, handler);
    return handler.found;
}

/// The text with another address in its spelling; "does not fit" if that is impossible.
std::string respelled(const std::string& text, const std::string& other) {
    OneAddress handler(addressIn(other));
    const std::string result = Report::handleTokens(text, handler);
    EXPECT_TRUE(handler.fits || result == text);
    return handler.fits ? result : "does not fit";
}

TEST(RespellTest, WritesAnAddressInTheSpellingOfAnother) {
    const struct {
        std::string text;
        std::string other;
        std::string result;
    } cases[] = {
        {"<10.0.0.1:80>", "17.4.6.2", "<17.4.6.2:80>"},
        {"010.000.000.001", "17.4.6.2", "017.004.006.002"},
        {"::ffff:10.0.0.1", "17.4.6.2", "::ffff:17.4.6.2"},
        {"::FFFF:A00:1", "11.4.0.2", "::FFFF:B04:2"},
        {"fe80::1%eth0", "bc13::9", "bc13::9%eth0"},
        {"FE80:0:0::0001/64", "bc13::9", "BC13:0:0::0009/64"},
        {"2001:db8::aB", "3007:ea1:0:0:0:0:0:df", "3007:ea1::dF"},
        {"fe80::", "bc13:0:0:0:0:0:0:0", "bc13::"},
        {"::5:6", "0:0:0:0:0:0:7:8", "::7:8"},
        {"64:ff9b::10.0.0.1", "75:aa1c:0:0:0:0:1104:602", "75:aa1c::17.4.6.2"},
        {"00-11-22-33-44-5F", "40:03:91:18:72:6a", "40-03-91-18-72-6A"},
        {"0011.2233.445f", "40:03:91:18:72:6a", "4003.9118.726a"},
        {"20010DB800000000000000000000000a", "3007:ea1:0:0:0:0:0:d", "30070EA100000000000000000000000d"},
        {"00000000000000000000ffff0a000001", "11.4.0.2", "00000000000000000000ffff0b040002"},
        {"001122.fffe.33445f", "40:03:91:ff:fe:18:72:6a", "400391.fffe.18726a"},
    };
    for (const auto& [text, other, result] : cases) {
        EXPECT_EQ(respelled(text, other), result) << text;
    }
}

TEST(RespellTest, RefusesAnAddressOfAnotherLength) {
    EXPECT_EQ(respelled("10.0.0.1", "17.40.6.2"), "does not fit");
    EXPECT_EQ(respelled("fe80::1", "fe80::12"), "does not fit");
    EXPECT_EQ(respelled("fe80::1", "fe80:0:0:1:0:0:0:1"), "does not fit");
    EXPECT_EQ(respelled("::ffff:a00:1", "17.4.6.2"), "does not fit");
}

/// The octets that can replace each octet of an address, as a count.
std::vector<int> choicesFor(const std::string& text, Report::SpellingNeeds needs = {}) {
    const Address address = addressIn(text);
    std::vector<int> counts;
    for (std::size_t index = 0; index < Report::widthOf(address.kind); ++index) {
        int count = 0;
        for (unsigned octet = 0; octet < 256; ++octet) {
            count += Report::fits(address, index, static_cast<std::uint8_t>(octet), needs) ? 1 : 0;
        }
        counts.push_back(count);
    }
    return counts;
}

TEST(RespellTest, ChoosesOctetsThatFitIntoEverySpelling) {
    // Decimal numbers with as many digits; no replacement begins with 0, 127 or 224 to 239.
    EXPECT_EQ(choicesFor("10.0.0.255"), (std::vector{90, 10, 10, 156}));
    EXPECT_EQ(choicesFor("8.8.8.8"), (std::vector{9, 10, 10, 10}));
    EXPECT_EQ(choicesFor("100.1.1.1"), (std::vector{139, 10, 10, 10}));
    // ... and as many hexadecimal digits, with letters where the original has letters: 10 to 15.
    EXPECT_EQ(choicesFor("10.0.0.1", {.hexadecimal = true}), (std::vector{6, 10, 1, 9}));
    // Groups of zeros are left out in some spelling.
    EXPECT_EQ(choicesFor("2001:db8::a"), (std::vector{90, 100, 6, 60, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 6}));
    // A hardware address can be part of an IPv6 address, with the second lowest bit of its first octet
    // inverted.
    EXPECT_EQ(choicesFor("00:11:22:33:44:5f"), (std::vector{3, 100, 90, 100, 90, 60}));
}

TEST(RespellTest, KeepsTheCaseOfEachLetterInAWord) {
    const struct {
        std::string text;
        std::string word;
        std::string result;
    } cases[] = {
        {"Bob-17", "dqz-52", "Dqz-52"},
        {"BTS", "qzx", "QZX"},
        {"M\xc3\x9cLLER", "z\xc3\xa0xyvw", "Z\xc3\x80XYVW"},
    };
    for (const auto& [text, word, result] : cases) {
        std::string written = text;
        EXPECT_TRUE(Report::rewriteWord(written, word));
        EXPECT_EQ(written, result);
        EXPECT_EQ(Report::folded(written), word);
    }
    std::string other = "b\xc3\xbc";
    EXPECT_FALSE(Report::rewriteWord(other, "xyz"));
    EXPECT_EQ(other, "b\xc3\xbc");
}

TEST(RespellTest, FoldsOnlyLettersWhoseOtherFormIsAsLong) {
    // The capital of the dotless i and the sharp s have other lengths; the sigma has two small forms.
    EXPECT_EQ(Report::folded("\xc3\x84\xd0\x96\xc4\xb1\xc3\x9f\xcf\x82"),
              "\xc3\xa4\xd0\xb6\xc4\xb1\xc3\x9f\xcf\x82");
}

}  // namespace
