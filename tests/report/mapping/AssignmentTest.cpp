#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Assignment.hpp"
#include "Budget.hpp"
#include "Letters.hpp"
#include "MappingFile.hpp"
#include "TextStream.hpp"

using Report::Address;
using Report::AddressKind;
using Report::Mapping;

namespace {

/// Assigns replacements to what a text holds.
class AssignmentTest : public testing::Test {
protected:
    void assign(const std::string& text, const std::vector<std::string>& names = {}) {
        Report::Budget budget(Report::Limits{});
        Report::Originals originals(mapping, budget);
        for (const std::string& name : names) {
            originals.addName(name);
        }
        Report::handleTokens(text, originals);
        Report::assignReplacements(originals, mapping, random);
    }

    std::string refusalOf(const std::string& text, const std::vector<std::string>& names = {}) {
        try {
            assign(text, names);
        } catch (const Report::NoReplacement& error) {
            return error.what();
        }
        return "no refusal";
    }

    /// The replacement of an address in its usual spelling.
    std::string replaced(const std::string& text) const {
        return textOf(mapping.replacements().addresses.at(parse(text)));
    }

    static Address parse(const std::string& text) {
        struct Taker : Report::TokenHandler {
            bool address(const Report::FoundAddress& token, std::span<char> /*spelling*/) override {
                found = token.address;
                return true;
            }
            void word(std::span<char> /*text*/) override {}
            Address found;
        } taker;
        Report::handleTokens(text, taker);
        return taker.found;
    }

    /// Checks that no two originals have the same replacement, and that none is an original.
    void expectFreshReplacements() const {
        std::set<Address> replacements;
        for (const auto& [original, replacement] : mapping.replacements().addresses) {
            EXPECT_TRUE(replacements.insert(replacement).second);
            EXPECT_FALSE(mapping.isOriginal(replacement)) << textOf(replacement);
            EXPECT_FALSE(describesNobody(replacement)) << textOf(replacement);
        }
    }

    Mapping mapping;
    Report::Random random{1};  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
};

/// The number of octets that two addresses begin with together.
std::size_t shared(const Address& one, const Address& other) {
    return static_cast<std::size_t>(std::ranges::mismatch(one.octets, other.octets).in1 - one.octets.begin());
}

std::string randomAddress(Report::Random& random, AddressKind kind) {
    Address address{.kind = kind};
    for (std::size_t index = 0; index < widthOf(kind); ++index) {
        // Few different octets, so that many addresses share prefixes.
        constexpr std::array octets{0, 1, 9, 10, 16, 99, 100, 0xa0, 0xff};
        address.octets[index] = static_cast<std::uint8_t>(octets[random() % octets.size()]);
    }
    return textOf(address);
}

TEST_F(AssignmentTest, KeepsTheRelationOfPrefixesAtOctetBorders) {
    std::string text;
    for (int count = 0; count < 300; ++count) {
        for (const AddressKind kind : {AddressKind::ip4, AddressKind::ip6, AddressKind::mac}) {
            text += randomAddress(random, kind) + "\n";
        }
    }
    assign(text);
    expectFreshReplacements();
    const auto& replacements = mapping.replacements().addresses;
    EXPECT_GT(replacements.size(), 600U);
    for (const auto& [one, oneReplacement] : replacements) {
        for (const auto& [other, otherReplacement] : replacements) {
            if (one.kind == other.kind) {
                ASSERT_EQ(shared(one, other), shared(oneReplacement, otherReplacement))
                    << textOf(one) << " " << textOf(other) << " " << textOf(oneReplacement) << " "
                    << textOf(otherReplacement);
            }
        }
    }
}

TEST_F(AssignmentTest, LeavesWhatDescribesNobody) {
    assign(
        "0.0.0.0 0.1.2.3 127.0.0.1 127.1.2.3 224.0.0.1 239.255.255.250 255.255.255.255 ::ffff:127.0.0.1 "
        ":: ::1 ff02::1 ff00:: 00:00:00:00:00:00 ff:ff:ff:ff:ff:ff 01:00:5e:00:00:01 33-33-00-00-00-01 "
        "0100.5e00.0001 01:00:5e:ff:fe:00:00:01");
    EXPECT_EQ(mapping.replacements().addresses.size(), 0U);
}

TEST_F(AssignmentTest, ReplacesEverythingElse) {
    assign(
        "1.0.0.0 10.0.0.1 126.255.255.255 128.0.0.0 169.254.0.1 172.16.0.1 192.168.0.1 223.255.255.255 "
        "240.0.0.1 255.255.255.0 255.255.255.254 ::2 ::1:0 1:: fe80::1 fc00::1 fe00::1 00:00:00:00:00:01 "
        "fe:ff:ff:ff:ff:ff 02:00:00:00:00:00");
    EXPECT_EQ(mapping.replacements().addresses.size(), 20U);
    expectFreshReplacements();
}

TEST_F(AssignmentTest, GivesAnAddressOneReplacementInAllItsSpellings) {
    assign(
        "10.0.0.1 010.000.000.001 ::ffff:10.0.0.1 ::FFFF:A00:1 fe80::1 FE80:0:0:0:0:0:0:0001 "
        "00:11:22:33:44:5f 00-11-22-33-44-5F 0011.2233.445F");
    EXPECT_EQ(mapping.replacements().addresses.size(), 3U);
}

TEST_F(AssignmentTest, KeepsTheRelationOfAddressesThatAreMadeFromHardwareAddresses) {
    assign(
        "00:11:22:33:44:55 fe80::211:22ff:fe33:4455 2001:db8::211:22ff:fe33:4455 "
        "02:11:22:ff:fe:33:44:55 0211.22ff.fe99.0001 fe80::299:22ff:fe33:1");
    const Address mac = parse(replaced("00:11:22:33:44:55"));
    const std::array ending = Report::eui64Of(mac, true);
    for (const std::string derived : {"fe80::211:22ff:fe33:4455", "2001:db8::211:22ff:fe33:4455"}) {
        const Address replacement = parse(replaced(derived));
        EXPECT_TRUE(std::equal(ending.begin(), ending.end(), replacement.octets.begin() + 8)) << derived;
    }
    EXPECT_EQ(replaced("02:11:22:ff:fe:33:44:55"),
              textOf(Address{
                  AddressKind::eui64,
                  {ending[0], ending[1], ending[2], ending[3], ending[4], ending[5], ending[6], ending[7]}}));
    // An address whose hardware address is nowhere else gives that one a replacement, too.
    EXPECT_TRUE(mapping.isOriginal(parse("00:99:22:33:00:01")));
    // An EUI-64 without a known address counts as made without inverting the bit.
    EXPECT_TRUE(mapping.isOriginal(parse("02:11:22:99:00:01")));
}

TEST_F(AssignmentTest, KeepsEarlierReplacements) {
    const std::string earlier = "korvel-report map 1\nip4 10.0.0.1 17.4.6.2\nname bob dqz\n";
    mapping = Report::parseMapping(earlier);
    assign("10.0.0.1 10.0.0.2 10.0.3.1", {"bob"});
    EXPECT_EQ(replaced("10.0.0.1"), "17.4.6.2");
    EXPECT_EQ(shared(parse(replaced("10.0.0.2")), parse("17.4.6.2")), 3U);
    EXPECT_EQ(shared(parse(replaced("10.0.3.1")), parse("17.4.6.2")), 2U);
    EXPECT_EQ(mapping.replacements().names.at("bob"), "dqz");
}

TEST_F(AssignmentTest, ReplacesAReplacementThatIsAnOriginalOfTheNextPackage) {
    mapping = Report::parseMapping(
        "korvel-report map 1\nip4 10.0.0.1 17.4.6.2\nmac 00:11:22:33:44:55 40:03:91:18:72:60\n"
        "name bob dqz\n");
    assign("17.4.6.2 4003.9118.7260 400391187260 DQZ");
    EXPECT_TRUE(mapping.isOriginal(parse("17.4.6.2")));
    EXPECT_TRUE(mapping.isOriginal(parse("40:03:91:18:72:60")));
    EXPECT_TRUE(mapping.isOriginal("dqz"));
}

TEST_F(AssignmentTest, TakesBareDigitsForAnAddressOnlyIfTheyAreAnEarlierReplacement) {
    mapping = Report::parseMapping("korvel-report map 1\nmac 00:11:22:33:44:55 40:03:91:18:72:60\n");
    assign("001122334466 400391187260");
    EXPECT_EQ(mapping.replacements().addresses.size(), 2U);
    EXPECT_TRUE(mapping.isOriginal(parse("40:03:91:18:72:60")));
}

TEST_F(AssignmentTest, ChoosesNothingThatTheTextContainsOtherwise) {
    // Of the words with one digit, only "3" is left.
    assign("1 2 4 5 6 7 8 9 ::2 ::3 ::4", {"0"});
    EXPECT_EQ(mapping.replacements().names.at("0"), "3");
    expectFreshReplacements();
}

TEST_F(AssignmentTest, HidesNoOriginalInsideALongerReplacement) {
    // The prefix is 210.0.0. Only 10 to 19 and 100 to 199 of it hold the first address.
    mapping = Report::parseMapping("korvel-report map 1\nip4 192.0.0.1 210.0.0.2\n");
    std::string text = "10.0.0.1 ";
    for (int last = 20; last < 90; ++last) {
        text += "192.0.0." + std::to_string(last) + " ";
    }
    assign(text);
    for (int last = 20; last < 90; ++last) {
        EXPECT_FALSE(replaced("192.0.0." + std::to_string(last)).starts_with("210.0.0.1"));
    }
}

TEST_F(AssignmentTest, GivesUpPrefixesBeforeItRefuses) {
    // Below each of the nine prefixes of this length, six addresses are free, but one prefix has nine
    // originals.
    std::string text;
    for (int prefix = 1; prefix <= 9; ++prefix) {
        for (int last = 1; last <= (prefix == 1 ? 9 : 3); ++last) {
            text += "::" + std::to_string(prefix) + ":" + std::to_string(last) + " ";
        }
    }
    assign(text);
    EXPECT_EQ(mapping.replacements().addresses.size(), 33U);
    expectFreshReplacements();
}

TEST_F(AssignmentTest, RefusesAndNamesTheOriginalIfNothingOfItsLengthIsLeft) {
    EXPECT_EQ(refusalOf("::2 ::3 ::4 ::5 ::6 ::7 ::8 ::9"),
              "no replacement of the same length is left for 0:0:0:0:0:0:0:2");
    EXPECT_EQ(refusalOf("1 2 3 4 5 6 7 8 9", {"0"}), "no replacement of the same length is left for 0");
}

TEST_F(AssignmentTest, ChoosesNamesOfTheSameForm) {
    const std::vector<std::string> names{
        "bts-17", "a", "alice", "x_9-fade", "0042", "m\xc3\xbcller", "\xe6\x9d\xb1\xe4\xba\xac", "\xd0\xb6"};
    assign("", names);
    std::set<std::string> replacements;
    for (const std::string& name : names) {
        const std::string& replacement = mapping.replacements().names.at(name);
        EXPECT_TRUE(replacements.insert(replacement).second);
        EXPECT_TRUE(Report::isWord(replacement));
        EXPECT_TRUE(Report::sameCharacterLengths(name, replacement)) << replacement;
        EXPECT_EQ(Report::folded(replacement), replacement);
        for (std::size_t place = 0; place < name.size(); ++place) {
            const auto kind = [](char byte) {
                return byte == '-' || byte == '_'   ? byte
                       : byte >= '0' && byte <= '9' ? '0'
                       : byte >= 'a' && byte <= 'f' ? 'a'
                       : byte >= 'g' && byte <= 'z' ? 'g'
                                                    : '?';
            };
            EXPECT_EQ(kind(name[place]), kind(replacement[place])) << name << " " << replacement;
        }
    }
}

// Otherwise rack300.1.2.3 could become rack217.1.2.3, which holds an IPv4 address.
TEST_F(AssignmentTest, KeepsNumbersOfNamesTooLargeForOctets) {
    std::vector<std::string> names;
    for (int number = 256; number < 1000; ++number) {
        names.push_back("b" + std::to_string(number) + "x");
        names.push_back(std::to_string(number) + "-site-with-a-long-name");
    }
    assign("", names);
    for (const std::string& name : names) {
        EXPECT_GT(mapping.replacements().names.at(name).substr(name.front() == 'b' ? 1 : 0, 3), "255");
    }
}

TEST_F(AssignmentTest, DoesNotAlwaysChooseTheSame) {
    std::set<std::string> replacements;
    for (int run = 0; run < 5; ++run) {
        mapping = Mapping();
        assign("10.0.0.1");
        replacements.insert(replaced("10.0.0.1"));
    }
    EXPECT_GT(replacements.size(), 1U);
}

}  // namespace
