// The request managers of a run.

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "Managers.hpp"

namespace {

using Words = std::vector<std::string>;

class RegisterManagers : public testing::Test {
protected:
    RegisterManagers() { Korvel::registerManagers(); }
    void TearDown() override { Korvel::managers.clear(); }

    /// The names of the managers that detect this command line.
    static Words claimants(const Words& words) {
        ArgumentVector vector(words);
        Words names;
        for (const auto& manager : Korvel::managers) {
            if (manager->detectKeywords(vector.argc(), vector.argv())) {
                names.push_back(manager->getName());
            }
        }
        return names;
    }
};

}  // namespace

TEST_F(RegisterManagers, CreatesTheManagersInTheOrderOfDetection) {
    Words names;
    std::ranges::transform(Korvel::managers, std::back_inserter(names),
                           [](const auto& manager) { return manager->getName(); });

    EXPECT_EQ(names, (Words{"LogCollection", "Action", "Supervision", "Archive"}));
}

TEST_F(RegisterManagers, CreatesOneForEachKindOfKeyword) {
    EXPECT_EQ(claimants({"print"}), Words{"LogCollection"});
    EXPECT_EQ(claimants({"getport"}), Words{"Action"});
    EXPECT_EQ(claimants({"supervision"}), Words{"Supervision"});
    EXPECT_EQ(claimants({"archive"}), Words{"Archive"});
    EXPECT_EQ(claimants({"eth0"}), Words{});
}

TEST_F(RegisterManagers, PrefersLogCollectionIfSeveralDetectACommandLine) {
    EXPECT_EQ(claimants({"getport", "print"}), (Words{"LogCollection", "Action"}));
}
