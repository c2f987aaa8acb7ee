#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TextStream.hpp"
#include "TokenRecorder.hpp"

using namespace ReportTest;
using Report::Address;
using Report::AddressKind;

namespace {

std::string tokensOf(const std::string& text) {
    TokenRecorder recorder;
    Report::handleTokens(text, recorder);
    return recorder.text();
}

struct Case {
    std::string text;
    std::string tokens;
};

void expectTokens(const std::vector<Case>& cases) {
    for (const auto& [text, tokens] : cases) {
        EXPECT_EQ(tokensOf(text), tokens) << text;
    }
}

TEST(TokenScannerTest, FindsIp4AddressesInAllTheirSurroundings) {
    expectTokens({
        {"10.0.0.1", "ip4(10.0.0.1)"},
        {"10.0.0.1:80, 192.168.1.0/24;(8.8.8.8)", "ip4(10.0.0.1) 80 ip4(192.168.1.0) 24 ip4(8.8.8.8)"},
        {"010.000.000.001", "ip4(010.000.000.001)"},
        {"from=10.0.0.1.", "from ip4(10.0.0.1)"},
        {"10.0.0.1.8080 > 10.0.0.2.443:", "ip4(10.0.0.1) 8080 ip4(10.0.0.2) 443"},
        {"10.0.0.1-10.0.0.9", "ip4(10.0.0.1) ip4(10.0.0.9)"},
        {"v10.0.0.1 ip-10.0.0.1 x_10.0.0.1_y 10.0.0.1st",
         "ip4(10.0.0.1) ip4(10.0.0.1) ip4(10.0.0.1) ip4(10.0.0.1)"},
        {"lib.so.1.2.3.4 10.0.0.1.log", "lib so ip4(1.2.3.4) ip4(10.0.0.1) log"},
        {"::ffff:10.0.0.1 ::FFFF:a00:1 [::ffff:10.0.0.1]:80",
         "ip4(::ffff:10.0.0.1) ip4(::FFFF:a00:1) ip4(::ffff:10.0.0.1) 80"},
        {"0:0:0:0:0:ffff:10.0.0.1", "ip4(0:0:0:0:0:ffff:10.0.0.1)"},
    });
}

TEST(TokenScannerTest, TakesNoOtherNumbersForIp4Addresses) {
    expectTokens({
        {"1.2.3", "1 2 3"},
        {"256.1.1.1 1.1.1.256 1.2.3.1000", "256 1 1 1 1 1 1 256 1 2 3 1000"},
        {"1..2.3.4 1.2.3. 4", "1 2 3 4 1 2 3 4"},
        {"12:34:56.789123", "12 34 56 789123"},
    });
}

TEST(TokenScannerTest, FindsFourNumbersOfALongChainAsUncertain) {
    expectTokens({
        {"1.3.6.1.4.1", "ip4?(1.3.6.1) 4 1"},
        {"1.3.6.1.2.1.10.0.0.1", "ip4?(1.3.6.1) ip4?(2.1.10.0) 0 1"},
        {"1234.10.0.0.1", "1234 ip4?(10.0.0.1)"},
    });
}

TEST(TokenScannerTest, FindsIp6AddressesInAllTheirSurroundings) {
    expectTokens({
        {"fe80::1%eth0 fe80::1/64 [fe80::1]:80", "ip6(fe80::1) eth0 ip6(fe80::1) 64 ip6(fe80::1) 80"},
        {"2001:db8:0:1:2:3:4:5 2001:0DB8::00aB", "ip6(2001:db8:0:1:2:3:4:5) ip6(2001:0DB8::00aB)"},
        {"fe80::, ::1 :: ::2", "ip6(fe80::) ip6(::1) ip6(::) ip6(::2)"},
        {"addr:fe80::1: up", "addr ip6(fe80::1) up"},
        {"fe80::1:eth0 fe80::1.log fe80::1-fe80::9",
         "ip6(fe80::1) eth0 ip6(fe80::1) log ip6(fe80::1) ip6(fe80::9)"},
        {"64:ff9b::10.0.0.1 ::10.0.0.1", "ip6(64:ff9b::10.0.0.1) ip6(::10.0.0.1)"},
        {"1:2:3:4:5:6:10.0.0.1", "ip6(1:2:3:4:5:6:10.0.0.1)"},
        {"2001:db8:0:1:2:3:4:5:443", "ip6(2001:db8:0:1:2:3:4:5) 443"},
        {":::22 :::*", "ip6(::) 22 ip6(::)"},
        {"peer=2001:db8::1:80", "peer ip6(2001:db8::1:80)"},
    });
}

TEST(TokenScannerTest, TakesNoTimesNamesOrChainsForIp6Addresses) {
    expectTokens({
        {"12:34:56 2026-11-22T08:30:33Z", "12 34 56 2026-11-22T08 30 33Z"},
        {"NetFP::Proxy std::fade Foo::bar()", "NetFP Proxy std fade Foo bar"},
        {"abc::definition Dead::Proxy xfe80::1", "abc definition Dead Proxy xfe80 1"},
        {"1:2:3:4:5:6:7", "1 2 3 4 5 6 7"},
        {"1:2:3:4:5:6:7:8:9:a", "1 2 3 4 5 6 7 8 9 a"},
        {"10000::1 fe80::12345", "10000 1 fe80 12345"},
    });
}

// A replacement such as 1.2.3.217:: would be read as another address.
TEST(TokenScannerTest, TakesNoIp6AddressWhoseFirstGroupCouldBecomeTheEndOfAnIp4Address) {
    expectTokens({
        {"1.2.3.300::1 1.2.3.300a::1", "1 2 3 300 1 1 2 3 300a 1"},
        {"1.2.3.a00::1 1.2.3.3000::1", "1 2 3 ip6(a00::1) 1 2 3 ip6(3000::1)"},
        {"2.3.300::1 1234.2.3.300::1", "2 3 ip6(300::1) 1234 2 3 ip6(300::1)"},
        {"eth0.300::1", "eth0 ip6(300::1)"},
    });
}

// A replacement such as fe80::217.1.2.3 would be read as another address.
TEST(TokenScannerTest, TakesNoIp6AddressWhoseLastGroupCouldBecomeTheBeginningOfAnIp4Address) {
    expectTokens({
        {"fe80::300.1.2.3 1::2:999.1.2.3", "fe80 300 1 2 3 1 2 999 1 2 3"},
        {"fe80::300.1.2 fe80::30a.1.2.3", "ip6(fe80::300) 1 2 ip6(fe80::30a) 1 2 3"},
        {"fe80::300.1.2.999 fe80::3000.1.2.3", "ip6(fe80::300) 1 2 999 ip6(fe80::3000) 1 2 3"},
        {"1:2:3:4:5:6:7:300.1.2.3", "ip6(1:2:3:4:5:6:7:300) 1 2 3"},
    });
}

TEST(TokenScannerTest, FindsHardwareAddressesInAllTheirSpellings) {
    expectTokens({
        {"00:11:22:33:44:5f 00-11-22-33-44-5F 0011.2233.445f",
         "mac(00:11:22:33:44:5f) mac(00-11-22-33-44-5F) mac(0011.2233.445f)"},
        {"eth0_00:11:22:33:44:5f: up", "mac(00:11:22:33:44:5f) up"},
        {"mac:00:11:22:33:44:5f, mac-00-11-22-33-44-5f.pcap",
         "mac mac(00:11:22:33:44:5f) mac(00-11-22-33-44-5f) pcap"},
        {"0011.2233.445f.log", "mac(0011.2233.445f) log"},
        {"02:11:22:ff:fe:33:44:5f 02-11-22-FF-FE-33-44-5F",
         "eui64(02:11:22:ff:fe:33:44:5f) eui64(02-11-22-FF-FE-33-44-5F)"},
        {"0211:22ff:fe33:445f, 0211:22ff:fe33:445f:0001:0002:0003:0004",
         "eui64(0211:22ff:fe33:445f) ip6(0211:22ff:fe33:445f:0001:0002:0003:0004)"},
        {"0211.22ff.fe33.445f 001122.fffe.33445f", "eui64(0211.22ff.fe33.445f) eui64(001122.fffe.33445f)"},
    });
}

TEST(TokenScannerTest, FindsHardwareAddressesThatMayBeSomethingElseAsUncertain) {
    expectTokens({
        {"00112233445f 001122fffe33445f", "mac?(00112233445f) eui64?(001122fffe33445f)"},
        {"0x00112233445f 0x0011223344 0x001122fffe33445f",
         "mac?(00112233445f) 0x0011223344 eui64?(001122fffe33445f)"},
        {"123e4567-e89b-12d3-a456-426614174000", "mac?(426614174000)"},
        {"01:00:11:22:33:44:5f", "mac?(01:00:11:22:33:44) 5f"},
        {"2026-11-22-08-30-33-12", "mac?(11-22-08-30-33-12)"},
        {"1234.0011.2233.445f", "mac?(1234.0011.2233) 445f"},
    });
}

TEST(TokenScannerTest, FindsBareIp6AddressesAsUncertain) {
    expectTokens({
        {"fe80000000000000021122fffe33445f 02 eth0", "ip6?(fe80000000000000021122fffe33445f) 02 eth0"},
        {"00000000000000000000ffff0a000001", "ip4?(00000000000000000000ffff0a000001)"},
    });
}

TEST(TokenScannerTest, FindsWordsAndOtherAddressesInUncertainOnesThatAreNotTaken) {
    const struct {
        std::string text;
        std::string tokens;
    } cases[] = {
        {"bts-001122334455 x", "mac?(001122334455) bts-001122334455 x"},
        {"1.3.6.10.0.0.1", "ip4?(1.3.6.10) 1 ip4?(3.6.10.0) 3 ip4?(6.10.0.0) 6 ip4?(10.0.0.1) 10 0 0 1"},
        {"01:00:11:22:33:44:5f", "mac?(01:00:11:22:33:44) 01 mac?(00:11:22:33:44:5f) 00 11 22 33 44 5f"},
    };
    for (const auto& [text, tokens] : cases) {
        TokenRecorder recorder(false);
        Report::handleTokens(text, recorder);
        EXPECT_EQ(recorder.text(), tokens);
    }
}

TEST(TokenScannerTest, TakesNoPartsOfLongerHexadecimalNumbersForHardwareAddresses) {
    expectTokens({
        {"a00112233445f 00112233445 00112233445f6", "a00112233445f 00112233445 00112233445f6"},
        {"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855",
         "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"0:11:22:33:44:55 000:11:22:33:44:55", "0 11 22 33 44 55 000 11 22 33 44 55"},
        {"00:11:22:33:44", "00 11 22 33 44"},
    });
}

TEST(TokenScannerTest, FindsWholeWords) {
    expectTokens({
        {"bob bobcat bob-2 my_bob", "bob bobcat bob-2 my_bob"},
        {"/home/bob/x.log:bob@host: (bob)", "home bob x log bob host bob"},
        {"M\xc3\xbcller\xe2\x80\x9e"
         "Jos\xc3\xa9\xe2\x80\x9c",
         "M\xc3\xbcller Jos\xc3\xa9"},
        {"a\xff"
         "b \xc3",
         "a b"},
        {std::string(255, 'x') + " " + std::string(256, 'y') + " z", std::string(255, 'x') + " z"},
    });
}

}  // namespace
