#include <gtest/gtest.h>

#include "BoardSecurity.hpp"
#include "HostBoard.hpp"
#include "TestFiles.hpp"

namespace {

TEST(IsBoardSecured, IsFalseIfThePlatformReportsIt) {
    EXPECT_FALSE(isBoardSecured());
}

TEST(IsBoardSecured, IsTrueIfThePlatformReportsIt) {
    writeFile(HostBoard::secureFile, "1\n");

    EXPECT_TRUE(isBoardSecured());
}

TEST(IsBoardSecured, IsTrueForAnyFlagExceptZero) {
    for (const char* flag : {"2\n", "-1\n"}) {
        SCOPED_TRACE(flag);
        writeFile(HostBoard::secureFile, flag);

        EXPECT_TRUE(isBoardSecured());
    }
}

TEST(IsBoardSecured, IsTrueIfThePlatformFails) {
    writeFile(HostBoard::secureFile, "0\n");
    for (const char* error : {"1\n", "-1\n"}) {
        SCOPED_TRACE(error);
        writeFile(HostBoard::secureErrorFile, error);

        EXPECT_TRUE(isBoardSecured());
    }
}

}  // namespace
