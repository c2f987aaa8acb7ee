#include "OutOfRange.hpp"

#include <stdexcept>

#include <gmock/gmock.h>

#include "ArgumentVector.hpp"
#include "Printed.hpp"

void expectOutOfRange(Korvel::SimpleAction& action, const std::vector<std::string>& words,
                      const std::string& text) {
    ArgumentVector vector(words);
    const Printed printed = printedBy([&] {
        EXPECT_THAT([&] { action.run(vector.argc(), vector.argv()); },
                    testing::ThrowsMessage<std::out_of_range>(text));
    });
    EXPECT_EQ(printed, Printed{});
}
