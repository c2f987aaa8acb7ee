#include <iomanip>
#include <iostream>

#include <gtest/gtest.h>

#include "ConsoleHeader.hpp"
#include "OutputCapture.hpp"

using Korvel::printLogHeader;

namespace {

/// Standard output around one header.
class PrintLogHeader : public testing::Test {
protected:
    std::string headerOf(const std::string& title) {
        printLogHeader(title);
        return console.out();
    }

    OutputCapture console;
};

TEST_F(PrintLogHeader, FillsTheLineUpTo64Characters) {
    EXPECT_EQ(headerOf("Interfaces"), "### Interfaces #################################################\n");
}

TEST_F(PrintLogHeader, Has59NumberSignsForAnEmptyTitle) {
    EXPECT_EQ(headerOf(""), "###  " + std::string(59, '#') + "\n");
}

TEST_F(PrintLogHeader, HasOneNumberSignForATitleOf58Characters) {
    EXPECT_EQ(headerOf(std::string(58, 't')), "### " + std::string(58, 't') + " #\n");
}

TEST_F(PrintLogHeader, HasNoNumberSignForATitleOf59Characters) {
    EXPECT_EQ(headerOf(std::string(59, 't')), "### " + std::string(59, 't') + " \n");
}

TEST_F(PrintLogHeader, HasThreeNumberSignsForALongerTitle) {
    for (const std::size_t length : {60U, 61U, 500U}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(headerOf(std::string(length, 't')), "### " + std::string(length, 't') + " ###\n");
    }
}

TEST_F(PrintLogHeader, SetsTheFillCharacterOfLaterOutput) {
    printLogHeader("State");
    console.out();

    std::cout << std::setw(6) << 42 << 7 << '\n';

    EXPECT_EQ(console.out(), "####427\n");
}

}  // namespace
