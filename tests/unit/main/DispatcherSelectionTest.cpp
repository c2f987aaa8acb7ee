// The dispatcher instances that the option -d selects.

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Configuration.hpp"
#include "DispatcherSelection.hpp"
#include "ForkedWork.hpp"
#include "Printed.hpp"
#include "VerboseMode.hpp"

namespace Configuration = Korvel::Configuration;

namespace {

/// The instances that are selected after these values of the option, and the output.
std::string selectedBy(const std::vector<std::string>& types, bool verbose = false) {
    return returnedByChild([&] {
        Korvel::setVerboseMode(verbose);
        std::ostringstream text;
        text << printedBy([&] {
                    for (const std::string& type : types) {
                        Korvel::selectDispatcherFromOption(type);
                    }
                }).out
             << "selected:";
        for (auto instance = Configuration::getInstanceBegin(); instance != Configuration::getInstanceEnd();
             ++instance) {
            text << ' ' << Configuration::dispInstanceToString(*instance);
        }
        return text.str();
    });
}

}  // namespace

TEST(SelectDispatcherFromOption, SelectsTheInstancesThatTheValueNames) {
    EXPECT_EQ(selectedBy({"iwf"}), "selected: iwf");
    EXPECT_EQ(selectedBy({"sfn"}), "selected: sfn");
    EXPECT_EQ(selectedBy({"all"}), "selected: iwf sfn");
}

TEST(SelectDispatcherFromOption, AddsToTheSelection) {
    EXPECT_EQ(selectedBy({"sfn", "iwf"}), "selected: iwf sfn");
    EXPECT_EQ(selectedBy({"sfn", "sfn"}), "selected: sfn");
}

TEST(SelectDispatcherFromOption, LeavesTheSelectionUnchangedForAnyOtherValue) {
    for (const std::string type : {"", "IWF", "both", "iwf ", "0"}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(selectedBy({type}), "selected:");
        EXPECT_EQ(selectedBy({"sfn", type}), "selected: sfn");
    }
}

TEST(SelectDispatcherFromOption, PrintsItsChoiceInVerboseMode) {
    EXPECT_EQ(selectedBy({"iwf"}, true), "Communicating with iwf dispatcher\nselected: iwf");
    EXPECT_EQ(selectedBy({"sfn"}, true), "Communicating with sfn dispatcher\nselected: sfn");
    EXPECT_EQ(selectedBy({"all"}, true), "Communicating with both dispatchers\nselected: iwf sfn");
    EXPECT_EQ(selectedBy({"none"}, true),
              "Invalid dispatcher type specified: none. Using default instance (IWF)\nselected:");
}
