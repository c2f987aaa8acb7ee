#include <string>

#include <gtest/gtest.h>

#include "ManagedInterfaces.hpp"

using Boardsim::ManagedInterfaces;

namespace {

class ManagedInterfacesTest : public testing::Test {
protected:
    /// Adds an interface by a message field that is padded with zeros.
    std::uint32_t add(std::string name) {
        name.resize(32, '\0');
        return interfaces.add(name);
    }

    ManagedInterfaces interfaces;
};

}  // namespace

TEST_F(ManagedInterfacesTest, AreEmptyAtFirst) {
    EXPECT_EQ(interfaces.text(), "");
}

TEST_F(ManagedInterfacesTest, AreListedInTheOrderOfTheirNames) {
    EXPECT_EQ(add("eth2"), ManagedInterfaces::added);
    EXPECT_EQ(add("eth1"), ManagedInterfaces::added);
    EXPECT_EQ(add(std::string(31, 'n')), ManagedInterfaces::added);

    EXPECT_EQ(interfaces.text(), "managed interfaces:\n  eth1\n  eth2\n  nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn\n");
}

TEST_F(ManagedInterfacesTest, AreAddedOnce) {
    ASSERT_EQ(add("eth1"), ManagedInterfaces::added);

    EXPECT_EQ(add("eth1"), ManagedInterfaces::managedAlready);
    EXPECT_EQ(add("ETH1"), ManagedInterfaces::added);

    EXPECT_EQ(interfaces.text(), "managed interfaces:\n  ETH1\n  eth1\n");
}

TEST_F(ManagedInterfacesTest, RefuseAnEmptyOrUnterminatedName) {
    for (const std::string& name : {std::string(), std::string(32, 'n')}) {
        EXPECT_EQ(add(name), ManagedInterfaces::badName);
    }
    EXPECT_EQ(interfaces.text(), "");
}

TEST_F(ManagedInterfacesTest, AreNamedByTheTextBeforeTheFirstZero) {
    EXPECT_EQ(add(std::string("eth1\0rest", 9)), ManagedInterfaces::added);

    EXPECT_EQ(interfaces.text(), "managed interfaces:\n  eth1\n");
}
