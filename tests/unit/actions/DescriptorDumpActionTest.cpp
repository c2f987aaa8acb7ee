// "desc_dump" on descriptors and buffers in the board's memory.

#include "DescriptorDumpAction.hpp"
#include "DumpFixture.hpp"
#include "DumpText.hpp"
#include "KorvelHelp.hpp"
#include "WireNumber.hpp"

namespace {

constexpr std::uint32_t buffer = 0xeb700000;
constexpr std::uint32_t lengthMask = 0x3fffff;

/// The words of a descriptor that the action shows. The others hold unrelated values.
struct Fields {
    std::uint32_t length = 60;
    std::uint32_t pointer = buffer + 64;
    std::uint32_t originalLength = 256;
    std::uint32_t originalPointer = buffer;
};

std::string bytesOf(const Fields& fields) {
    std::string bytes;
    for (const std::uint32_t word : {0x11111111U, 0x22222222U, 0x33333333U, fields.length, fields.pointer,
                                     0x55555555U, fields.originalLength, fields.originalPointer}) {
        bytes += littleEndian(word);
    }
    return bytes + "what follows the words, as a dump of 64 bytes shows it too";
}

class DescriptorDumpActionTest : public DumpFixture {
protected:
    DescriptorDumpActionTest() { put(buffer, content); }

    static void given(const Fields& fields) { put(memory, bytesOf(fields)); }

    /// Runs a new action with these words after its keyword.
    bool dump(const std::vector<std::string>& arguments) {
        std::vector<std::string> words{"desc_dump"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        Korvel::DescriptorDumpAction action;
        return run(action, words);
    }

    void expectRefused(const std::vector<std::string>& arguments, const std::string& reason = {}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_FALSE(dump(arguments));
        EXPECT_EQ(printed, (Printed{.err = reason + "Invalid parameters provided to descriptor dump\n"}));
    }

    static std::string header(const std::string& physical, const std::string& address) {
        return "Decriptor highlights:\n    Physical: " + physical + "\n    Virtual:  " + address + "\n";
    }

    /// The output for the descriptor `fields` at `memory`. The pointers are as the action shows them.
    static std::string shown(const Fields& fields, const std::string& pointer = "0xeb700040",
                             const std::string& originalPointer = "0xeb700000") {
        return header("0xeb6b6100", virtualAddress(memory)) +
               "    Buffer length:      " + std::to_string(fields.length & lengthMask) +
               "\n    Orig buffer length: " + std::to_string(fields.originalLength & lengthMask) +
               "\n    Buffer ptr:      " + pointer + "\n    Orig buffer ptr: " + originalPointer +
               "\n\nHexdump:\n" + dumpText(bytesOf(fields).substr(0, 64));
    }

    std::string shownContent(std::size_t size) const {
        return "\nBuffer hexdump of first " + std::to_string(size) + " bytes:\n" +
               dumpText(content.substr(0, size));
    }

    const std::string content = patternOf(1024);
};

}  // namespace

TEST_F(DescriptorDumpActionTest, ShowsTheFieldsAndTheFirst64Bytes) {
    put(memory, littleEndian(0x8000003c) + littleEndian(0) + littleEndian(0x00010203) + littleEndian(60) +
                    littleEndian(0xeb700040) + littleEndian(0) + littleEndian(256) +
                    littleEndian(0xeb700000) + std::string(32, 'd'));

    EXPECT_TRUE(dump({"0xeb6b6100"}));

    EXPECT_EQ(
        printed,
        (Printed{.out = header("0xeb6b6100", virtualAddress(memory)) +
                        "    Buffer length:      60\n"
                        "    Orig buffer length: 256\n"
                        "    Buffer ptr:      0xeb700040\n"
                        "    Orig buffer ptr: 0xeb700000\n"
                        "\n"
                        "Hexdump:\n"
                        " 0000  3C 00 00 80 00 00 00 00 03 02 01 00 3C 00 00 00  '<...........<...'\n"
                        " 0010  40 00 70 EB 00 00 00 00 00 01 00 00 00 00 70 EB  '@.p...........p.'\n"
                        " 0020  64 64 64 64 64 64 64 64 64 64 64 64 64 64 64 64  'dddddddddddddddd'\n"
                        " 0030  64 64 64 64 64 64 64 64 64 64 64 64 64 64 64 64  'dddddddddddddddd'\n"}));
}

TEST_F(DescriptorDumpActionTest, DumpsTheStartOfTheOriginalBufferOnRequest) {
    given({});

    for (const std::string length : {"32", "0x20", "040", "+32 bytes"}) {
        SCOPED_TRACE(length);
        EXPECT_TRUE(dump({"eb6b6100", length}));
        EXPECT_EQ(printed, (Printed{.out = shown({}) + shownContent(32)}));
    }
}

TEST_F(DescriptorDumpActionTest, DumpsNoBufferForLengthZero) {
    given({});

    EXPECT_TRUE(dump({"0xeb6b6100", "0"}));

    EXPECT_EQ(printed, (Printed{.out = shown({})}));
}

TEST_F(DescriptorDumpActionTest, DumpsNoMoreThanTheBufferHas) {
    for (const std::uint32_t size : {1U, 10U, 31U, 32U}) {
        const Fields fields{.originalLength = size};
        given(fields);
        EXPECT_TRUE(dump({"0xeb6b6100", "32"}));
        EXPECT_EQ(printed, (Printed{.out = shown(fields) + shownContent(size)}));
    }
    given({});
    EXPECT_TRUE(dump({"0xeb6b6100", "4294967295"}));
    EXPECT_EQ(printed, (Printed{.out = shown({}) + shownContent(256)}));
}

TEST_F(DescriptorDumpActionTest, DumpsALineBeforeTheFirstOfAnEmptyBuffer) {
    const Fields empty{.originalLength = 0};
    given(empty);

    EXPECT_TRUE(dump({"0xeb6b6100", "32"}));

    EXPECT_EQ(printed,
              (Printed{.out = shown(empty) + "\nBuffer hexdump of first 0 bytes:\n FFFFFFF0   ''\n"}));
}

TEST_F(DescriptorDumpActionTest, UsesOnlyTheLower22BitsOfALength) {
    const Fields lowest{.length = 0xffc00000 | 60, .originalLength = 0x00400000 | 10};
    given(lowest);
    EXPECT_TRUE(dump({"0xeb6b6100", "32"}));
    EXPECT_EQ(printed, (Printed{.out = shown(lowest) + shownContent(10)}));

    const Fields highest{.length = 0xffffffff, .originalLength = lengthMask};
    given(highest);
    EXPECT_TRUE(dump({"0xeb6b6100"}));
    EXPECT_EQ(printed, (Printed{.out = shown(highest)}));
}

TEST_F(DescriptorDumpActionTest, EndsAfterTheBuffersHeaderIfItsPointerIsInvalid) {
    const Fields astray{.originalPointer = nowhere};
    given(astray);

    EXPECT_TRUE(dump({"0xeb6b6100", "32"}));

    EXPECT_EQ(printed, (Printed{.out = shown(astray, "0xeb700040", "0x10") +
                                       "\nBuffer hexdump of first 32 bytes:\n"}));
}

TEST_F(DescriptorDumpActionTest, DoesNotFollowTheCurrentBufferPointer) {
    const Fields unset{.pointer = 0};
    given(unset);

    EXPECT_TRUE(dump({"0xeb6b6100", "16"}));

    EXPECT_EQ(printed, (Printed{.out = shown(unset, "(nil)") + shownContent(16)}));
}

TEST_F(DescriptorDumpActionTest, ReadsADescriptorAtAnyAlignment) {
    put(memory + 1, bytesOf({.length = 7}));

    EXPECT_TRUE(dump({"0xeb6b6101"}));

    EXPECT_EQ(printed, (Printed{.out = header("0xeb6b6101", virtualAddress(memory + 1)) +
                                       "    Buffer length:      7\n"
                                       "    Orig buffer length: 256\n"
                                       "    Buffer ptr:      0xeb700040\n"
                                       "    Orig buffer ptr: 0xeb700000\n"
                                       "\n"
                                       "Hexdump:\n" +
                                       dumpText(bytesOf({.length = 7}).substr(0, 64))}));
}

TEST_F(DescriptorDumpActionTest, EndsAfterItsAddressesIfTheyDoNotTranslate) {
    EXPECT_TRUE(dump({"10"}));
    EXPECT_EQ(printed, (Printed{.out = header("0x10", "(nil)")}));

    EXPECT_TRUE(dump({"10", "32"}));
    EXPECT_EQ(printed, (Printed{.out = header("0x10", "(nil)")}));
}

TEST_F(DescriptorDumpActionTest, RefusesABadCommandLine) {
    expectRefused({});
    for (const std::string text : {"zz", "", " ", "-"}) {
        expectRefused({text});
        expectRefused({text, "32"});
        expectRefused({"0xeb6b6100", text});
    }
    for (const std::string text : {"0x100000000", "0x10000000000000000", "-1"}) {
        expectRefused({text}, outOfRange);
        expectRefused({text, text}, outOfRange);
        expectRefused({"0xeb6b6100", text}, outOfRange);
    }
}

TEST_F(DescriptorDumpActionTest, PrintsTheErrorCodeOfTheTranslationOnlyAfterGoodArguments) {
    breakTranslation(-17);

    EXPECT_FALSE(dump({"0xeb6b6100", "32"}));
    EXPECT_EQ(printed, (Printed{.out = "Failed to initialize VASK CMA, errcode: -17"}));
    expectRefused({"zz"});
}

TEST_F(DescriptorDumpActionTest, PrintsItsHelp) {
    Korvel::DescriptorDumpAction action;

    EXPECT_EQ(action.getKeyword(), "desc_dump");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("desc_dump", "<>", "/bin/k")}));
}
