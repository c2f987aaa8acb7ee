#include <cstdarg>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "HeaderlessSmLog.hpp"
#include "SmLog.hpp"
#include "Vask.h"

// Calls that are compiled against the headers in platform/include reach the right operations. The libraries
// in this test do not use these headers, like the libraries of existing boards.

namespace {

// Compiles only if the types match exactly.
static_assert(std::is_same_v<AppID, unsigned>);
[[maybe_unused]] constexpr SmLog* (*getClientInstance)(const char*, unsigned) = &SmLog::getClientInstance;
[[maybe_unused]] constexpr void (SmLog::*write)(int, const char*, const char*, ...) = &SmLog::write;
[[maybe_unused]] constexpr void (SmLog::*vwrite)(int, const char*, const char*,
                                                 std::va_list) = &SmLog::vwrite;
[[maybe_unused]] constexpr unsigned (SmLog::*read)(char*, unsigned, unsigned, unsigned,
                                                   unsigned) = &SmLog::read;
[[maybe_unused]] constexpr bool (SmLog::*overlap)(unsigned, unsigned) = &SmLog::overlap;
[[maybe_unused]] constexpr int (*cmaProcessInit)() = &vask_cma_process_init;
[[maybe_unused]] constexpr int (*cmaPhyToVirt)(unsigned, void**) = &vask_cma_phy_to_virt;
[[maybe_unused]] constexpr int (*securityIsSecureEnv)(int*) = &vask_security_is_secure_env;

static_assert(!std::has_virtual_destructor_v<SmLog>, "a virtual destructor takes slots of the table");
static_assert(sizeof(SmLog) == sizeof(void*), "callers know only the first word of a client");

class SmLogCallers : public testing::Test {
protected:
    static SmLog& client() { return *SmLog::getClientInstance("some_log", 3); }

    __attribute__((format(printf, 1, 2))) static void vwrite(const char* format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        client().vwrite(5, "Tag", format, arguments);
        va_end(arguments);
    }

    static std::string call() { return headerlessSmLogCall(); }
};

TEST_F(SmLogCallers, AskForAClientByNameAndApplication) {
    client();

    EXPECT_EQ(call(), "client of some_log, app 3");
}

TEST_F(SmLogCallers, WriteThroughTheFirstSlot) {
    client().write(4, "Tag", "port %d of %s", 7, "eth0");

    EXPECT_EQ(call(), "slot 0: level 4, tag Tag, text port 7 of eth0");
}

TEST_F(SmLogCallers, WriteListsOfArgumentsThroughTheSecondSlot) {
    vwrite("port %d of %s", 7, "eth0");

    EXPECT_EQ(call(), "slot 1: level 5, tag Tag, text port 7 of eth0");
}

TEST_F(SmLogCallers, ReadThroughTheThirdSlot) {
    std::string buffer(16, '?');

    const unsigned end = client().read(buffer.data(), 16, 1, 4294967294, 5);

    EXPECT_EQ(call(), "slot 2: size 16, app 1, start 4294967294, mode 5");
    EXPECT_EQ(buffer, std::string("text of the log\0", 16));
    EXPECT_EQ(end, 4294967295);
}

TEST_F(SmLogCallers, AskForOverlapsThroughTheFourthSlot) {
    EXPECT_FALSE(client().overlap(1, 4294967295));
    EXPECT_TRUE(client().overlap(2, 1));

    EXPECT_EQ(call(), "slot 3: from 2 to 1");
}

TEST(VaskCallers, ReachTheFunctionsByTheirNames) {
    void* address = nullptr;
    int secure = 0;

    EXPECT_EQ(vask_cma_process_init(), 11);
    EXPECT_EQ(vask_cma_phy_to_virt(0xeb6b6100, &address), 12);
    EXPECT_EQ(vask_security_is_secure_env(&secure), 13);

    EXPECT_EQ(*static_cast<unsigned*>(address), 0xeb6b6100U);
    EXPECT_EQ(secure, -1);
}

}  // namespace
