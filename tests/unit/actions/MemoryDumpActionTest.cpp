// "mem_dump" on memory that the board's library really maps.

#include "DumpFixture.hpp"
#include "DumpText.hpp"
#include "KorvelHelp.hpp"
#include "MemoryDumpAction.hpp"

namespace {

class MemoryDumpActionTest : public DumpFixture {
protected:
    /// Runs a new action with these words after its keyword.
    bool dump(const std::vector<std::string>& arguments) {
        std::vector<std::string> words{"mem_dump"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        Korvel::MemoryDumpAction action;
        return run(action, words);
    }

    void expectRefused(const std::vector<std::string>& arguments, const std::string& reason = {}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_FALSE(dump(arguments));
        EXPECT_EQ(printed, (Printed{.err = reason + "Invalid parameters provided to memory dump\n"}));
    }

    static std::string header(const std::string& physical, const std::string& address,
                              const std::string& length) {
        return "Memory dump:\n    Physical: " + physical + "\n    Virtual:  " + address + "\nHexdump of " +
               length + " bytes:\n";
    }
    static std::string header(std::size_t length) {
        return header("0xeb6b6100", virtualAddress(memory), std::to_string(length));
    }
};

}  // namespace

TEST_F(MemoryDumpActionTest, DumpsTheBytesAtAPhysicalAddress) {
    put(memory, "thirty-two bytes of the memory\n");

    EXPECT_TRUE(dump({"0xeb6b6100", "32"}));

    EXPECT_EQ(
        printed,
        (Printed{.out = header(32) +
                        " 0000  74 68 69 72 74 79 2D 74 77 6F 20 62 79 74 65 73  'thirty-two bytes'\n"
                        " 0010  20 6F 66 20 74 68 65 20 6D 65 6D 6F 72 79 0A 00  ' of the memory..'\n"}));
}

TEST_F(MemoryDumpActionTest, DumpsTheRequestedNumberOfBytes) {
    const std::string content = patternOf(200000);
    put(memory, content);
    for (const std::size_t length : {1U, 15U, 16U, 17U, 20U, 32U, 65535U, 200000U}) {
        SCOPED_TRACE(length);
        EXPECT_TRUE(dump({"0xeb6b6100", std::to_string(length)}));
        EXPECT_TRUE(printed.out == header(length) + dumpText(content.substr(0, length)));
        EXPECT_EQ(printed.err, "");
    }
}

TEST_F(MemoryDumpActionTest, DumpsALineBeforeTheFirstForLengthZero) {
    EXPECT_TRUE(dump({"0xeb6b6100", "0"}));

    EXPECT_EQ(printed, (Printed{.out = header(0) + " FFFFFFF0   ''\n"}));
}

TEST_F(MemoryDumpActionTest, ReadsTheAddressAsHexadecimal) {
    put(memory, "x");
    for (const std::string address : {"0xeb6b6100", "0XEB6B6100", "eb6b6100", "EB6B6100", "+eb6b6100",
                                      " \t\neb6b6100", "0000000000eb6b6100", "eb6b6100ghi", "eb6b6100 0"}) {
        SCOPED_TRACE(address);
        EXPECT_TRUE(dump({address, "1"}));
        EXPECT_EQ(printed, (Printed{.out = header(1) + " 0000  78  'x'\n"}));
    }
}

TEST_F(MemoryDumpActionTest, ReadsTheLengthInTheNotationOfC) {
    const struct {
        std::string argument;
        std::size_t length;
    } cases[] = {{"0x10", 16},  {"0X1f", 31},  {"010", 8},  {"10", 10},   {"+10", 10},
                 {" \t10", 10}, {"9bytes", 9}, {"0x1g", 1}, {"1 000", 1}, {"018", 1}};
    const std::string content = patternOf(32);
    put(memory, content);
    for (const auto& [argument, length] : cases) {
        SCOPED_TRACE(argument);
        EXPECT_TRUE(dump({"0xeb6b6100", argument}));
        EXPECT_EQ(printed, (Printed{.out = header(length) + dumpText(content.substr(0, length))}));
    }
}

TEST_F(MemoryDumpActionTest, ReadsALengthThatEndsAfterItsFirstZeroAsZero) {
    for (const std::string length : {"0x", "08", "-0", "00"}) {
        SCOPED_TRACE(length);
        EXPECT_TRUE(dump({"0xeb6b6100", length}));
        EXPECT_EQ(printed, (Printed{.out = header(0) + " FFFFFFF0   ''\n"}));
    }
}

TEST_F(MemoryDumpActionTest, DumpsFromAnyByteUpToTheLastAddress) {
    put(0xfffffffd, "end");

    EXPECT_TRUE(dump({"0xfffffffd", "3"}));

    EXPECT_EQ(printed, (Printed{.out = header("0xfffffffd", virtualAddress(0xfffffffd), "3") +
                                       " 0000  65 6E 64  'end'\n"}));
}

TEST_F(MemoryDumpActionTest, DumpsTheSwitchRegisters) {
    put(0x02090110, "\x30");

    EXPECT_TRUE(dump({"2090110", "1"}));

    EXPECT_EQ(printed,
              (Printed{.out = header("0x2090110", virtualAddress(0x02090110), "1") + " 0000  30  '0'\n"}));
}

TEST_F(MemoryDumpActionTest, EndsAfterTheHeaderIfTheAddressDoesNotTranslate) {
    for (const std::string length : {"0", "32", "4294967295"}) {
        SCOPED_TRACE(length);
        EXPECT_TRUE(dump({"10", length}));
        EXPECT_EQ(printed, (Printed{.out = header("0x10", "(nil)", length)}));
    }
}

TEST_F(MemoryDumpActionTest, IgnoresFurtherArguments) {
    EXPECT_TRUE(dump({"10", "0x10", "zz"}));

    EXPECT_EQ(printed, (Printed{.out = header("0x10", "(nil)", "16")}));
}

TEST_F(MemoryDumpActionTest, NeedsAnAddressAndALength) {
    expectRefused({});
    expectRefused({"0xeb6b6100"});
}

TEST_F(MemoryDumpActionTest, RefusesAWordThatIsNotANumber) {
    for (const std::string text : {"zz", "", " ", "-", "+ 1", "--1", "\xff"}) {
        expectRefused({text, "32"});
        expectRefused({"0xeb6b6100", text});
    }
    expectRefused({"0xeb6b6100", "eb"});
}

TEST_F(MemoryDumpActionTest, RefusesNumbersBeyond32BitsAndBelowZero) {
    for (const std::string address :
         {"100000000", "0x100000000", "10000000000000000", "fffffffffffffffffffffffff", "-1"}) {
        expectRefused({address, "32"}, outOfRange);
    }
    for (const std::string length :
         {"4294967296", "0x100000000", "040000000000", "99999999999", "18446744073709551617", "-1"}) {
        expectRefused({"0xeb6b6100", length}, outOfRange);
    }
}

TEST_F(MemoryDumpActionTest, ReadsTheLengthOnlyAfterAGoodAddress) {
    expectRefused({"zz", "99999999999"});
    expectRefused({"-1", "99999999999"}, outOfRange);
}

TEST_F(MemoryDumpActionTest, PrintsTheErrorCodeOfTheTranslation) {
    for (const int code : {5, -17}) {
        breakTranslation(code);
        EXPECT_FALSE(dump({"0xeb6b6100", "32"}));
        EXPECT_EQ(printed,
                  (Printed{.out = "Failed to initialize VASK CMA, errcode: " + std::to_string(code)}));
    }
}

TEST_F(MemoryDumpActionTest, PreparesTheTranslationOnlyAfterGoodArguments) {
    breakTranslation(5);

    expectRefused({"0xeb6b6100"});
    expectRefused({"0xeb6b6100", "zz"});
}

TEST_F(MemoryDumpActionTest, PrintsNoBytesBeforeItsArgumentsAreRead) {
    const Korvel::MemoryDumpAction action;

    EXPECT_EQ(printedBy([&] { action.printMemory(); }), (Printed{.out = header("0x0", "(nil)", "0")}));
}

TEST_F(MemoryDumpActionTest, ReadsNothingThroughANullPointer) {
    EXPECT_EQ(Korvel::MemoryDumpAction::physicalToVirtual(nowhere), nullptr);
    EXPECT_EQ(printedBy([] { Korvel::MemoryDumpAction::hexDump(nullptr, 64); }), Printed{});
}

TEST_F(MemoryDumpActionTest, DumpsALineBeforeTheFirstForNoBytesOfANullPointer) {
    EXPECT_EQ(printedBy([] { Korvel::MemoryDumpAction::hexDump(nullptr, 0); }),
              (Printed{.out = " FFFFFFF0   ''\n"}));
}

TEST_F(MemoryDumpActionTest, PrintsItsHelp) {
    Korvel::MemoryDumpAction action;

    EXPECT_EQ(action.getKeyword(), "mem_dump");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("mem_dump", "<>", "/bin/k")}));
}
