#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "ChildProcess.hpp"
#include "HostBoard.hpp"
#include "Vask.h"

namespace {

class VaskTest : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(HostBoard::settingsDir);
        clear();
    }
    void TearDown() override { clear(); }

    static void set(const char* file, const std::string& content) {
        std::ofstream(file, std::ios::binary) << content;
    }

    static unsigned char* at(unsigned physical) {
        void* address = nullptr;
        EXPECT_EQ(vask_cma_phy_to_virt(physical, &address), 0);
        return static_cast<unsigned char*>(address);
    }

private:
    static void clear() {
        for (const char* file :
             {HostBoard::secureFile, HostBoard::secureErrorFile, HostBoard::cmaErrorFile}) {
            std::filesystem::remove(file);
        }
        ::shm_unlink(HostBoard::ddrMemory);
        ::shm_unlink(HostBoard::switchRegisters);
    }
};

TEST_F(VaskTest, IsAHealthyUnsecuredBoardByDefault) {
    int secure = -1;

    EXPECT_EQ(vask_cma_process_init(), 0);
    EXPECT_EQ(vask_security_is_secure_env(&secure), 0);
    EXPECT_EQ(secure, 0);
}

TEST_F(VaskTest, FailsToInitialiseWithTheCodeThatIsSet) {
    set(HostBoard::cmaErrorFile, "-17\n");
    EXPECT_EQ(vask_cma_process_init(), -17);
    set(HostBoard::cmaErrorFile, "2147483647");
    EXPECT_EQ(vask_cma_process_init(), 2147483647);
}

TEST_F(VaskTest, TreatsASettingThatIsNotANumberAsZero) {
    for (const char* content : {"", "\n", "x", "7x", " 7", "7\n\n", "0x7", "2147483648",
                                "7777777777777777777", "0000000000000000007"}) {
        set(HostBoard::cmaErrorFile, content);
        EXPECT_EQ(vask_cma_process_init(), 0) << content;
    }
    std::filesystem::remove(HostBoard::cmaErrorFile);
    std::filesystem::create_directory(HostBoard::cmaErrorFile);
    EXPECT_EQ(vask_cma_process_init(), 0);
}

TEST_F(VaskTest, ReportsWhetherTheBoardIsSecured) {
    int secure = 0;
    set(HostBoard::secureFile, "1\n");

    EXPECT_EQ(vask_security_is_secure_env(&secure), 0);
    EXPECT_EQ(secure, 1);
}

TEST_F(VaskTest, FailsToReportTheSecurityIfConfiguredSo) {
    int secure = -1;
    set(HostBoard::secureFile, "1\n");
    set(HostBoard::secureErrorFile, "5\n");

    EXPECT_EQ(vask_security_is_secure_env(&secure), 5);
    EXPECT_EQ(secure, -1);
    EXPECT_NE(vask_security_is_secure_env(nullptr), 0);
}

TEST_F(VaskTest, TranslatesOnlyTheWindowsOfTheBoard) {
    for (const unsigned inside :
         {0x80000000U, 0x80000001U, 0xA0000000U, 0xFFFFFFFFU, 0x02090000U, 0x0209FFFFU}) {
        void* address = nullptr;
        EXPECT_EQ(vask_cma_phy_to_virt(inside, &address), 0) << std::hex << inside;
        EXPECT_NE(address, nullptr);
    }
    for (const unsigned outside : {0U, 0x0208FFFFU, 0x020A0000U, 0x7FFFFFFFU}) {
        void* address = this;
        EXPECT_NE(vask_cma_phy_to_virt(outside, &address), 0) << std::hex << outside;
        EXPECT_EQ(address, this);
    }
    EXPECT_NE(vask_cma_phy_to_virt(0x80000000U, nullptr), 0);
}

TEST_F(VaskTest, MapsAWindowAsOneRange) {
    constexpr unsigned distance = sizeof(void*) > 4 ? 0x7FFFFFFF : 0x03FFFFFF;

    std::memcpy(at(0x80000000U) + distance - 3, "text", 4);

    EXPECT_EQ(std::memcmp(at(0x80000000U + distance - 3), "text", 4), 0);
    EXPECT_EQ(*at(0x80000000U), 0);
}

TEST_F(VaskTest, SharesTheMemoryAmongAllProcesses) {
    ChildProcess writer([] {
        std::memcpy(at(0x9FFFFFFEU), "descriptor", 10);
        std::memcpy(at(0x02090010U), "register", 8);
        return true;
    });
    EXPECT_TRUE(writer.succeeds());

    EXPECT_EQ(std::memcmp(at(0x9FFFFFFEU), "descriptor", 10), 0);
    EXPECT_EQ(std::memcmp(at(0x02090010U), "register", 8), 0);
}

}  // namespace
