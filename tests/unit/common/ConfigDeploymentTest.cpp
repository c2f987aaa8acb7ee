#include <filesystem>

#include "ConfigFixture.hpp"
#include "TestFiles.hpp"

// What kind of deployment the board is, and which dispatcher instances it runs by default.

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
        EXPECT_EQ(board.getDeploymentConfigFile(DispatcherType::IWF), iwf);
        EXPECT_EQ(board.getDeploymentConfigFile(DispatcherType::SFN), sfn);
        EXPECT_EQ(board.getDeploymentConfigFile(DispatcherType{2}), "");
    }
};

TEST_F(ConfigDeployment, RunsOnlyIWFWithoutSFN) {
    const Config board = config();

    EXPECT_EQ(board.getSFNDeploymentType(), SFNDeploymentType::none);
    EXPECT_TRUE(board.shouldStartIWF());
    EXPECT_FALSE(board.shouldStartSFN());
    expectDeploymentFiles("/etc/QEL_IWF.cfg", "");
}

TEST_F(ConfigDeployment, RunsBothInstancesOnAnSFNMaster) {
    writeFile(masterFlag, "");

    const Config board = config();

    EXPECT_EQ(board.getSFNDeploymentType(), SFNDeploymentType::master);
    EXPECT_TRUE(board.shouldStartIWF());
    EXPECT_TRUE(board.shouldStartSFN());
    expectDeploymentFiles("/etc/SFN_Master_IWF.cfg", "/etc/SFN_Master_PhyProxy.cfg");
}

TEST_F(ConfigDeployment, RunsOnlySFNOnAnAntennaNode) {
    writeFile(antennaFlag, "");

    const Config board = config();

    EXPECT_EQ(board.getSFNDeploymentType(), SFNDeploymentType::antenna);
    EXPECT_FALSE(board.shouldStartIWF());
    EXPECT_TRUE(board.shouldStartSFN());
    expectDeploymentFiles("", "/etc/SFN_ANT_PhyClient.cfg");
}

TEST_F(ConfigDeployment, IsAnAntennaNodeWhereBothFlagFilesArePresent) {
    writeFile(antennaFlag, "");
    writeFile(masterFlag, "");

    EXPECT_EQ(config().getSFNDeploymentType(), SFNDeploymentType::antenna);
}

TEST_F(ConfigDeployment, TrustsAFlagFileMoreThanTheDeploymentType) {
    writeFile(masterFlag, "");

    EXPECT_EQ(typeFor("8core_SfnAnt\n"), SFNDeploymentType::master);
}

TEST_F(ConfigDeployment, IsReadFromTheFirstWordOfTheDeploymentType) {
    const struct {
        std::string text;
        SFNDeploymentType type;
    } cases[] = {
        {"8core_SfnAnt", SFNDeploymentType::antenna},
        {"6core_SfnMaster", SFNDeploymentType::master},
        {"\n \t6core_SfnMaster 8core_SfnAnt\n", SFNDeploymentType::master},
        {"4core_Iwf\n", SFNDeploymentType::none},
        {"the 8core_SfnAnt\n", SFNDeploymentType::none},
        {"8core_SfnAnt,\n", SFNDeploymentType::none},
        {"8CORE_SFNANT\n", SFNDeploymentType::none},
        {" \n\n", SFNDeploymentType::none},
    };
    for (const auto& [text, type] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(typeFor(text), type);
    }
}

TEST_F(ConfigDeployment, IsIWFOnlyForAnEmptyDeploymentType) {
    EXPECT_EQ(typeFor(""), SFNDeploymentType::none);
}

TEST_F(ConfigDeployment, IsIWFOnlyForADeploymentTypeThatCannotBeRead) {
    writeFile(typeFile, "8core_SfnAnt\n");
    std::filesystem::permissions(typeFile, std::filesystem::perms::none);

    EXPECT_EQ(config().getSFNDeploymentType(), SFNDeploymentType::none);
}

TEST_F(ConfigDeployment, IsTheSameOnASecuredBoard) {
    secureTheBoard();

    EXPECT_EQ(typeFor("6core_SfnMaster\n"), SFNDeploymentType::master);
}

}  // namespace
