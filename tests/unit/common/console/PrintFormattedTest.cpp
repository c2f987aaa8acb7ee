#include <iostream>
#include <string>

#include <gtest/gtest.h>

#include "Console.hpp"
#include "PrintFormatted.hpp"
#include "Printed.hpp"

using Korvel::printFormatted;

TEST(PrintFormatted, PutsItsArgumentsIntoTheFormat) {
    EXPECT_EQ(printedBy([] { printFormatted("%s: 0x%x, %u of %d%%\n", "port", 0xbeefU, 4000000000U, -1); }),
              (Printed{.out = "port: 0xbeef, 4000000000 of -1%\n"}));
}

TEST(PrintFormatted, ShowsPointersAsPrintfDoes) {
    EXPECT_EQ(printedBy([] {
                  const void* const nothing = nullptr;
                  printFormatted("%p %p", nothing, reinterpret_cast<const void*>(0xeb700000));
              }),
              (Printed{.out = "(nil) 0xeb700000"}));
}

TEST(PrintFormatted, AddsNothingToTheFormat) {
    EXPECT_EQ(printedBy([] { printFormatted("no line end"); }), (Printed{.out = "no line end"}));
    EXPECT_EQ(printedBy([] { printFormatted("%s", ""); }), Printed{});
}

TEST(PrintFormatted, DoesNotReadItsArgumentsAsFormats) {
    EXPECT_EQ(printedBy([] { printFormatted("%s", "100 %s"); }), (Printed{.out = "100 %s"}));
}

TEST(PrintFormatted, KeepsTheOrderOfPrinting) {
    EXPECT_EQ(printedBy([] {
                  Korvel::print("first\n");
                  printFormatted("%s\n", "second");
                  std::cout << "third\n";
                  printFormatted("%s\n", "fourth");
              }),
              (Printed{.out = "first\nsecond\nthird\nfourth\n"}));
}

TEST(PrintFormatted, Keeps511Characters) {
    const std::string text(511, 'x');

    EXPECT_EQ(printedBy([&] { printFormatted("%s", text.c_str()); }), (Printed{.out = text}));
}
