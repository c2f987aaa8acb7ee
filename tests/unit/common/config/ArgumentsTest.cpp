#include <vector>

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "Arguments.hpp"

using Korvel::removeArgument;

namespace {

/// The command line `korvel -v getport eth0`.
class RemoveArgument : public testing::Test {
protected:
    using Entries = std::vector<char*>;

    Entries entries() { return {line.argv(), line.argv() + line.argc()}; }
    char* entry(int index) { return line.argv()[index]; }

    ArgumentVector line{{"-v", "getport", "eth0"}};
};

TEST_F(RemoveArgument, MovesTheLaterEntriesDown) {
    const Entries expected{entry(0), entry(2), entry(3), nullptr};

    removeArgument(1, line.argc(), line.argv());

    EXPECT_EQ(entries(), expected);
}

TEST_F(RemoveArgument, CanRemoveTheProgramName) {
    const Entries expected{entry(1), entry(2), entry(3), nullptr};

    removeArgument(0, line.argc(), line.argv());

    EXPECT_EQ(entries(), expected);
}

TEST_F(RemoveArgument, ReplacesTheLastEntryByANullPointer) {
    const Entries expected{entry(0), entry(1), entry(2), nullptr};

    removeArgument(3, line.argc(), line.argv());

    EXPECT_EQ(entries(), expected);
}

TEST_F(RemoveArgument, EmptiesAVectorEntryByEntry) {
    for (int count = line.argc(); count > 0; --count) {
        removeArgument(0, count, line.argv());
    }

    EXPECT_EQ(entries(), Entries(4, nullptr));
}

}  // namespace
