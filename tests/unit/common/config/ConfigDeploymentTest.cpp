#include <filesystem>

#include "ConfigFixture.hpp"
#include "TestFiles.hpp"

// The deployment of the board, and the dispatcher instances that it runs by default.

namespace {

constexpr const char* antennaFlag = "/rom/private/is_ant";
constexpr const char* masterFlag = "/rom/private/is_master";
constexpr const char* typeFile = "/rom/config/deployment_type";

class ConfigDeployment : public ConfigFixture {
protected:
    static SFNDeploymentType typeFor(const std::string& text) {
        writeFile(typeFile, text);
        return config().getSFNDeploymentType();
    }

    static void expectDeploymentFiles(const std::string& iwf, const std::string& sfn) {
        const Config board = config();
        EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeIWF), iwf);
        EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeSFN), sfn);
        EXPECT_EQ(board.getDeploymentConfigFile(2), "");
    }
};

TEST_F(ConfigDeployment, RunsOnlyIWFWithoutSFN) {
    const Config board = config();

    EXPECT_EQ(board.getSFNDeploymentType(), sfnDeploymentNone);
    EXPECT_TRUE(board.shouldStartIWF());
    EXPECT_FALSE(board.shouldStartSFN());
    expectDeploymentFiles("/etc/QEL_IWF.cfg", "");
}

TEST_F(ConfigDeployment, RunsBothInstancesOnAnSFNMaster) {
    writeFile(masterFlag, "");

    const Config board = config();

    EXPECT_EQ(board.getSFNDeploymentType(), sfnDeploymentMaster);
    EXPECT_TRUE(board.shouldStartIWF());
    EXPECT_TRUE(board.shouldStartSFN());
    expectDeploymentFiles("/etc/SFN_Master_IWF.cfg", "/etc/SFN_Master_PhyProxy.cfg");
}

TEST_F(ConfigDeployment, RunsOnlySFNOnAnAntennaNode) {
    writeFile(antennaFlag, "");

    const Config board = config();

    EXPECT_EQ(board.getSFNDeploymentType(), sfnDeploymentAntenna);
    EXPECT_FALSE(board.shouldStartIWF());
    EXPECT_TRUE(board.shouldStartSFN());
    expectDeploymentFiles("", "/etc/SFN_ANT_PhyClient.cfg");
}

TEST_F(ConfigDeployment, IsAnAntennaNodeIfBothFlagFilesArePresent) {
    writeFile(antennaFlag, "");
    writeFile(masterFlag, "");

    EXPECT_EQ(config().getSFNDeploymentType(), sfnDeploymentAntenna);
}

TEST_F(ConfigDeployment, PrefersAFlagFileToTheDeploymentType) {
    writeFile(masterFlag, "");

    EXPECT_EQ(typeFor("8core_SfnAnt\n"), sfnDeploymentMaster);
}

TEST_F(ConfigDeployment, IsReadFromTheFirstWordOfTheDeploymentType) {
    const struct {
        std::string text;
        SFNDeploymentType type;
    } cases[] = {
        {"8core_SfnAnt", sfnDeploymentAntenna},
        {"6core_SfnMaster", sfnDeploymentMaster},
        {"\n \t6core_SfnMaster 8core_SfnAnt\n", sfnDeploymentMaster},
        {"4core_Iwf\n", sfnDeploymentNone},
        {"the 8core_SfnAnt\n", sfnDeploymentNone},
        {"8core_SfnAnt,\n", sfnDeploymentNone},
        {"8CORE_SFNANT\n", sfnDeploymentNone},
        {" \n\n", sfnDeploymentNone},
    };
    for (const auto& [text, type] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(typeFor(text), type);
    }
}

TEST_F(ConfigDeployment, IsOnlyIWFForAnEmptyDeploymentType) {
    EXPECT_EQ(typeFor(""), sfnDeploymentNone);
}

TEST_F(ConfigDeployment, IsOnlyIWFForAnUnreadableDeploymentType) {
    writeFile(typeFile, "8core_SfnAnt\n");
    std::filesystem::permissions(typeFile, std::filesystem::perms::none);

    EXPECT_EQ(config().getSFNDeploymentType(), sfnDeploymentNone);
}

TEST_F(ConfigDeployment, IsTheSameOnASecuredBoard) {
    secureTheBoard();

    EXPECT_EQ(typeFor("6core_SfnMaster\n"), sfnDeploymentMaster);
}

}  // namespace
