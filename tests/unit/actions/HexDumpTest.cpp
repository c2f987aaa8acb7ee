#include <string>

#include <gtest/gtest.h>

#include "DumpText.hpp"
#include "HexDump.hpp"
#include "Printed.hpp"

namespace {

class HexDumpTest : public testing::Test {
protected:
    static Printed dumpOf(const std::string& bytes) {
        return printedBy([&] { Korvel::printHexDump(bytes.data(), static_cast<unsigned>(bytes.size())); });
    }
};

}  // namespace

TEST_F(HexDumpTest, ShowsOffsetBytesAndCharacters) {
    EXPECT_EQ(dumpOf("a frame of 28 bytes, no more"),
              (Printed{.out = " 0000  61 20 66 72 61 6D 65 20 6F 66 20 32 38 20 62 79  'a frame of 28 by'\n"
                              " 0010  74 65 73 2C 20 6E 6F 20 6D 6F 72 65  'tes, no more'\n"}));
}

TEST_F(HexDumpTest, ShowsOneLineBeforeTheFirstOffsetIfThereAreNoBytes) {
    const Printed line{.out = " FFFFFFF0   ''\n"};

    EXPECT_EQ(dumpOf(""), line);
    EXPECT_EQ(printedBy([] { Korvel::printHexDump(nullptr, 0); }), line);
}

TEST_F(HexDumpTest, DoesNotPadAShortLastLine) {
    for (const std::size_t size : {1U, 15U, 16U, 17U, 20U, 31U, 32U, 33U, 48U}) {
        SCOPED_TRACE(size);
        const std::string bytes = patternOf(size);
        EXPECT_EQ(dumpOf(bytes), (Printed{.out = dumpText(bytes)}));
    }
}

TEST_F(HexDumpTest, ShowsADotForAnUnprintableByte) {
    const std::string everyByte = patternOf(256);

    EXPECT_EQ(dumpOf(everyByte), (Printed{.out = dumpText(everyByte)}));
    EXPECT_EQ(dumpOf("\x1f\x20\x7e\x7f\x80\xff"), (Printed{.out = " 0000  1F 20 7E 7F 80 FF  '. ~...'\n"}));
}

TEST_F(HexDumpTest, IsCompleteAtAnyLength) {
    for (const std::size_t size : {4096U, 65535U, 65536U, 65537U, 200003U}) {
        SCOPED_TRACE(size);
        const std::string bytes = patternOf(size);
        const Printed printed = dumpOf(bytes);
        EXPECT_TRUE(printed.out == dumpText(bytes));  // too long to print in a failure
        EXPECT_EQ(printed.err, "");
    }
}

TEST_F(HexDumpTest, ShowsOffsetsOfMoreThanFourDigitsInFull) {
    const std::string printed = dumpOf(std::string(0x100011, 'x')).out;

    const std::string full = "  78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78  'xxxxxxxxxxxxxxxx'\n";
    const std::string end = " FFFF0" + full + " 100000" + full + " 100010  78  'x'\n";
    ASSERT_GE(printed.size(), end.size());
    EXPECT_EQ(printed.substr(printed.size() - end.size()), end);
    EXPECT_NE(printed.find("\n FFF0" + full + " 10000" + full), std::string::npos);
}

TEST_F(HexDumpTest, FollowsEarlierOutput) {
    const Printed printed = printedBy([] {
        std::cout << "before\n";
        Korvel::printHexDump("x", 1);
        std::cout << "after\n";
    });

    EXPECT_EQ(printed, (Printed{.out = "before\n 0000  78  'x'\nafter\n"}));
}
