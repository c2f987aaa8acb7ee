// The outputs for the replies of the MMI services.

#include <filesystem>

#include "BoardCommand.hpp"
#include "HeaderLine.hpp"
#include "MmiLogCollectorFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

const std::string iwfFolder = "/tmp/korvel/mmi/iwf";

class MmiLogCollectorOutputTest : public MmiLogCollectorFixture {};

}  // namespace

TEST_F(MmiLogCollectorOutputTest, ShowsEachReplyUnderItsHeader) {
    selectIwf();
    selectSfn();
    repeatsCommands(iwf);
    repeatsCommands(sfn);
    collect(everything);

    EXPECT_EQ(show(), (Printed{.out = headerLine("iwf Socket Service Info") + "SocketSvcInfo\n" +
                                      headerLine("iwf Socket Service Counters") + "SocketSvcCounters\n" +
                                      headerLine("iwf Reassembly Counters") + "ReassemblyCounters\n" +
                                      headerLine("iwf Heap Statistics") + "HeapStats\n" +
                                      headerLine("sfn Socket Service Info") + "SocketSvcInfo\n" +
                                      headerLine("sfn Socket Service Counters") + "SocketSvcCounters\n" +
                                      headerLine("sfn Reassembly Counters") + "ReassemblyCounters\n" +
                                      headerLine("sfn Heap Statistics") + "HeapStats\n"}));
}

TEST_F(MmiLogCollectorOutputTest, WritesEachReplyUnchangedToItsFile) {
    selectIwf();
    selectSfn();
    repeatsCommands(iwf);
    repeatsCommands(sfn);
    collect(everything);

    EXPECT_EQ(dump(), Printed{});

    const std::vector<std::string> files = filesBelow("/tmp/korvel");
    EXPECT_EQ(files,
              (std::vector<std::string>{"mmi/iwf/HeapStats.log", "mmi/iwf/ReassemblyCounters.log",
                                        "mmi/iwf/SocketSvcCounters.log", "mmi/iwf/SocketSvcInfo.log",
                                        "mmi/sfn/HeapStats.log", "mmi/sfn/ReassemblyCounters.log",
                                        "mmi/sfn/SocketSvcCounters.log", "mmi/sfn/SocketSvcInfo.log"}));
    for (const std::string& file : files) {
        EXPECT_EQ(contentOfFile("/tmp/korvel/" + file), fs::path(file).stem().string());
    }
}

TEST_F(MmiLogCollectorOutputTest, WritesEmptyFilesAfterTimeOutsIfNoDispatcherListens) {
    selectIwf();  // which stays silent
    const std::string timedOut = "poll(): Timed out while waiting for response\n";

    EXPECT_EQ(collect(statistics), Printed{.err = timedOut + timedOut + timedOut});

    EXPECT_TRUE(succeeded);
    EXPECT_EQ(show(), Printed{});
    EXPECT_EQ(dump(), Printed{});
    EXPECT_EQ(filesBelow(iwfFolder),
              (std::vector<std::string>{"HeapStats.log", "ReassemblyCounters.log", "SocketSvcCounters.log"}));
    for (const auto& file : fs::directory_iterator(iwfFolder)) {
        EXPECT_EQ(file.file_size(), 0) << file;
    }
}

TEST_F(MmiLogCollectorOutputTest, ReplacesTheFilesOfAnEarlierRun) {
    selectIwf();
    repeatsCommands(iwf);
    collect(information);
    writeFile(iwfFolder + "/SocketSvcInfo.log", "left behind, and longer than the reply");

    EXPECT_EQ(dump(), Printed{});

    EXPECT_EQ(contentOfFile(iwfFolder + "/SocketSvcInfo.log"), "SocketSvcInfo");
}

TEST_F(MmiLogCollectorOutputTest, ReportsADirectoryThatCannotBeCreatedAndContinuesWithTheNextInstance) {
    selectIwf();
    selectSfn();
    repeatsCommands(iwf);
    repeatsCommands(sfn);
    collect(information);
    const BoardCommand mkdir("mkdir", "case $2 in */iwf/) exit 1 ;; *) exec /bin/mkdir $@ ;; esac");

    EXPECT_EQ(dump(),
              (Printed{.err = "Command: mkdir -p /tmp/korvel/mmi/iwf/ exited with error, exit code: 1\n"
                              "Error while creating directory: /tmp/korvel/mmi/iwf/\n"}));

    EXPECT_EQ(filesBelow("/tmp/korvel/mmi"), std::vector<std::string>{"sfn/SocketSvcInfo.log"});
}

TEST_F(MmiLogCollectorOutputTest, ReportsAFileThatCannotBeOpenedAndWritesTheOthers) {
    selectIwf();
    repeatsCommands(iwf);
    collect(statistics);
    fs::create_directories(iwfFolder + "/ReassemblyCounters.log");

    EXPECT_EQ(dump(), (Printed{.err = "Error while opening /tmp/korvel/mmi/iwf/ReassemblyCounters.log\n"}));

    EXPECT_EQ(filesBelow(iwfFolder), (std::vector<std::string>{"HeapStats.log", "SocketSvcCounters.log"}));
}

TEST_F(MmiLogCollectorOutputTest, ReportsAFileThatCannotBeWrittenAndWritesTheOthers) {
    selectIwf();
    repeatsCommands(iwf);
    collect(statistics);
    fs::create_directories(iwfFolder);
    fs::create_symlink("/dev/full", iwfFolder + "/ReassemblyCounters.log");

    EXPECT_EQ(dump(), (Printed{.err = "Error while writing /tmp/korvel/mmi/iwf/ReassemblyCounters.log: No "
                                      "space left on device\n"}));

    EXPECT_EQ(filesBelow(iwfFolder), (std::vector<std::string>{"HeapStats.log", "SocketSvcCounters.log"}));
}
