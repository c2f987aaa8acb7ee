// "mem_dump" and "desc_dump", on the memory of a simulated board.

#include <string>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"

using Boardsim::Board;

namespace {

/// The output of a dump. ADDRESS replaces the program's address of the memory, which differs in each run.
std::string withoutAddress(std::string out) {
    const std::string label = "    Virtual:  ";
    const std::size_t start = out.find(label + "0x");
    if (start == std::string::npos) {
        return out;
    }
    return out.replace(start + label.size(), out.find('\n', start) - start - label.size(), "ADDRESS");
}

void expectDump(const std::vector<std::string>& arguments, const std::string& text) {
    Outcome outcome = korvel(arguments);
    outcome.out = withoutAddress(outcome.out);
    EXPECT_EQ(outcome, (Outcome{.status = 0, .out = text, .err = ""}));
}

const std::string outOfRange = "Value provided to decriptor dump is out of range\n";

const std::string descriptor =
    "Decriptor highlights:\n"
    "    Physical: 0xeb6b6100\n"
    "    Virtual:  ADDRESS\n"
    "    Buffer length:      60\n"
    "    Orig buffer length: 256\n"
    "    Buffer ptr:      0xeb700040\n"
    "    Orig buffer ptr: 0xeb700000\n"
    "\n"
    "Hexdump:\n"
    " 0000  3C 00 00 80 00 00 00 00 03 02 01 00 3C 00 00 C0  '<...........<...'\n"
    " 0010  40 00 70 EB 00 00 00 00 00 01 00 C0 00 00 70 EB  '@.p...........p.'\n"
    " 0020  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  '................'\n"
    " 0030  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  '................'\n";

}  // namespace

TEST(MemoryDump, ShowsTheFrameInTheMemory) {
    const Board board({});

    expectDump({"mem_dump", "0xeb700040", "60"},
               "Memory dump:\n"
               "    Physical: 0xeb700040\n"
               "    Virtual:  ADDRESS\n"
               "Hexdump of 60 bytes:\n"
               " 0000  01 00 5E 00 00 01 02 00 00 00 00 01 08 00 61 20  '..^...........a '\n"
               " 0010  66 72 61 6D 65 20 6F 66 20 74 68 65 20 73 69 6D  'frame of the sim'\n"
               " 0020  75 6C 61 74 65 64 20 62 6F 61 72 64 00 00 00 00  'ulated board....'\n"
               " 0030  00 00 00 00 00 00 00 00 00 00 00 00  '............'\n");
}

TEST(MemoryDump, ShowsTheBytesThatAnotherProgramWrote) {
    const Board board({});
    run({"devmem", "0x90000000", "32", "0x64636261"});

    expectDump({"mem_dump", "90000000", "0x5"},
               "Memory dump:\n"
               "    Physical: 0x90000000\n"
               "    Virtual:  ADDRESS\n"
               "Hexdump of 5 bytes:\n"
               " 0000  61 62 63 64 00  'abcd.'\n");
}

TEST(MemoryDump, SucceedsAfterItsHeaderIfThereIsNoMemory) {
    const Board board({});

    expectDump({"mem_dump", "0x100", "32"},
               "Memory dump:\n"
               "    Physical: 0x100\n"
               "    Virtual:  (nil)\n"
               "Hexdump of 32 bytes:\n");
    expectDump({"desc_dump", "0x100", "32"},
               "Decriptor highlights:\n"
               "    Physical: 0x100\n"
               "    Virtual:  (nil)\n");
}

TEST(MemoryDump, FailsIfAnArgumentIsInvalid) {
    const std::string invalid = "Invalid parameters provided to memory dump\n";

    EXPECT_EQ(korvel({"mem_dump", "zz", "32"}), (Outcome{.status = 1, .out = "", .err = invalid}));
    EXPECT_EQ(korvel({"mem_dump", "0xeb6b6100"}), (Outcome{.status = 1, .out = "", .err = invalid}));
    EXPECT_EQ(korvel({"mem_dump", "0xeb6b6100", "99999999999"}),
              (Outcome{.status = 1, .out = "", .err = outOfRange + invalid}));
}

TEST(MemoryDump, FailsIfTheBoardCannotTranslateAddresses) {
    const Board board({.cmaError = -5});
    const Outcome failure{.status = 1, .out = "Failed to initialize VASK CMA, errcode: -5", .err = ""};

    EXPECT_EQ(korvel({"mem_dump", "0xeb6b6100", "32"}), failure);
    EXPECT_EQ(korvel({"desc_dump", "0xeb6b6100"}), failure);
}

TEST(MemoryDump, FailsIfItsOutputIsLost) {
    const Board board({});
    const Outcome failure{
        .status = 1, .out = "", .err = "Error while writing standard output: No space left on device\n"};

    for (const std::string length : {"0", "32", "1000000"}) {
        EXPECT_EQ(korvel({"mem_dump", "0xeb6b6100", length}, {.standardOutput = "/dev/full"}), failure);
    }
}

TEST(MemoryDump, EndsAsSoonAsItsReaderIsGone) {
    const Board board({});

    // The memory ends before the range, so a dump of the whole range would crash.
    const Outcome outcome = run({"bash", "-c",
                                 "{ env --default-signal=PIPE korvel mem_dump 0x80000000 0xffffffff;"
                                 " echo $? > /tmp/status; } | head -1"});

    EXPECT_EQ(outcome, (Outcome{.status = 0,
                                .out = "Memory dump:\n",
                                .err = "Error while writing standard output: Broken pipe\n"}));
    EXPECT_EQ(contentOfFile("/tmp/status"), "1\n");
}

TEST(DescriptorDump, ShowsTheDescriptorInTheMemory) {
    const Board board({});

    expectDump({"desc_dump", "0xeb6b6100"}, descriptor);
}

TEST(DescriptorDump, ShowsTheBufferFromItsStart) {
    const Board board({});

    expectDump({"desc_dump", "0xeb6b6100", "70"},
               descriptor +
                   "\n"
                   "Buffer hexdump of first 70 bytes:\n"
                   " 0000  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  '................'\n"
                   " 0010  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  '................'\n"
                   " 0020  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  '................'\n"
                   " 0030  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  '................'\n"
                   " 0040  01 00 5E 00 00 01  '..^...'\n");
}

TEST(DescriptorDump, FailsIfAnArgumentIsInvalid) {
    const std::string invalid = "Invalid parameters provided to descriptor dump\n";

    EXPECT_EQ(korvel({"desc_dump"}), (Outcome{.status = 1, .out = "", .err = invalid}));
    EXPECT_EQ(korvel({"desc_dump", "0xeb6b6100", "-1"}),
              (Outcome{.status = 1, .out = "", .err = outOfRange + invalid}));
}
