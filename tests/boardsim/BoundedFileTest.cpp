#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BoundedFile.hpp"
#include "TestFiles.hpp"

using Boardsim::BoundedFile;

namespace {

constexpr const char* path = "/tmp/bounded";
using Lines = std::vector<std::string>;

}  // namespace

TEST(BoundedFileTest, ExistsFromTheStart) {
    const BoundedFile file(path, 10);

    EXPECT_EQ(contentOfFile(path), "");
}

TEST(BoundedFileTest, AppendsToAnExistingFile) {
    BoundedFile(path, 10).addLine("one");
    BoundedFile(path, 10).addLine("two");

    EXPECT_EQ(linesOfFile(path), (Lines{"one", "two"}));
}

TEST(BoundedFileTest, DropsItsOlderHalfBeyondTheLimit) {
    const BoundedFile file(path, 16);
    for (const char* line : {"one", "two", "six", "ten"}) {
        file.addLine(line);
    }
    EXPECT_EQ(linesOfFile(path), (Lines{"one", "two", "six", "ten"}));

    file.addLine("end");

    EXPECT_EQ(linesOfFile(path), (Lines{"ten", "end"}));
}

TEST(BoundedFileTest, HasALineInPlaceOfTheDroppedLines) {
    const BoundedFile file(
        path, 8, [](std::string_view dropped) { return std::to_string(dropped.size()) + " bytes"; });
    for (const char* line : {"one", "two", "six"}) {
        file.addLine(line);
    }

    EXPECT_EQ(linesOfFile(path), (Lines{"8 bytes", "six"}));
}

TEST(BoundedFileTest, DropsALineThatIsTooLongByItself) {
    const BoundedFile file(path, 8);

    file.addLine("longer than all");

    EXPECT_EQ(contentOfFile(path), "");
}

TEST(BoundedFileTest, FollowsAFileThatSomebodyElseReplaced) {
    const BoundedFile one(path, 16);
    const BoundedFile two(path, 16);
    for (const char* line : {"a", "b", "c", "d", "e", "f", "g", "h", "i"}) {
        one.addLine(line);
    }

    two.addLine("j");

    EXPECT_EQ(linesOfFile(path), (Lines{"f", "g", "h", "i", "j"}));
}
