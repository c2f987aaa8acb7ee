#include <gtest/gtest.h>

#include "Utf8.hpp"

namespace {

TEST(ValidUtf8, ReplacesOnlyBytesThatAreNotUtf8) {
    EXPECT_EQ(Report::validUtf8("\x1b[31m \u202E Zürich\n"), "\x1b[31m \u202E Zürich\n");
    EXPECT_EQ(Report::validUtf8("a\xFF\xC3(\xE2\x82"), "a\uFFFD\uFFFD(\uFFFD\uFFFD");
}

}  // namespace
