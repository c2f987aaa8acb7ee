// The client's socket: how it is opened and closed.

#include <filesystem>
#include <memory>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "FailingCall.hpp"
#include "NetFPMasterCom.hpp"
#include "NetfpMasterWire.hpp"
#include "Printed.hpp"
#include "Process.hpp"
#include "RunningProcesses.hpp"
#include "ScriptedPeer.hpp"
#include "TestFiles.hpp"
#include "UniqueFd.hpp"
#include "VerboseMode.hpp"

namespace fs = std::filesystem;
using Korvel::NetFPMasterCom;

namespace {

const std::string usualPath = "/tmp/Korvel";

class NetFPMasterComConnectTest : public testing::Test {
protected:
    void TearDown() override {
        Korvel::setVerboseMode(false);
        NetFPMasterCom::setClientSocketPath(usualPath);
    }

    bool connect() {
        bool done = false;
        printed = printedBy([&] { done = client.connect(); });
        return done;
    }

    bool close() {
        bool done = false;
        printed = printedBy([&] { done = client.close(); });
        return done;
    }

    /// After a failed connect() there is nothing to close.
    void expectNotConnected() {
        EXPECT_TRUE(close());
        EXPECT_EQ(printed, (Printed{.err = "Client Socket not connected\n"}));
    }

    NetFPMasterCom client;
    Printed printed;
};

}  // namespace

TEST_F(NetFPMasterComConnectTest, HasDefaultPathsAndADefaultTimeOut) {
    EXPECT_EQ(NetFPMasterCom::getMasterSocketPath(), "/tmp/NetfpMaster");
    EXPECT_EQ(NetFPMasterCom::getClientSocketPath(), "/tmp/Korvel");
    EXPECT_EQ(NetFPMasterCom::getTimeout(), 10);
}

TEST_F(NetFPMasterComConnectTest, BindsTheClientsPathSilently) {
    EXPECT_TRUE(connect());

    EXPECT_EQ(printed, Printed{});
    EXPECT_TRUE(fs::is_socket(usualPath));
}

TEST_F(NetFPMasterComConnectTest, PrintsItsStepsInVerboseMode) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(connect());

    EXPECT_EQ(printed, (Printed{.out = "Creating Socket for Client\n"
                                       "Binding to Client Socket \"/tmp/Korvel\"\n"}));
    EXPECT_TRUE(close());
    EXPECT_EQ(printed, (Printed{.out = "Client Socket closed\n"}));
}

TEST_F(NetFPMasterComConnectTest, KeepsASocketThatItAlreadyHas) {
    ASSERT_TRUE(connect());
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(connect());

    EXPECT_EQ(printed, (Printed{.out = "Client Socket already connected\n"}));
}

TEST_F(NetFPMasterComConnectTest, DoesNotReportASecondConnectOutsideVerboseMode) {
    ASSERT_TRUE(connect());

    EXPECT_TRUE(connect());

    EXPECT_EQ(printed, Printed{});
}

TEST_F(NetFPMasterComConnectTest, ReplacesAnyFileAtItsPath) {
    const std::string path = "/tmp/occupied";
    writeFile(path, "left behind");
    NetFPMasterCom::setClientSocketPath(path);

    EXPECT_TRUE(connect());

    EXPECT_TRUE(fs::is_socket(path));
}

TEST_F(NetFPMasterComConnectTest, TakesThePathOverFromAnotherClient) {
    ScriptedPeer master = ScriptedPeer::atPath("/tmp/NetfpMaster");
    master.answers([](const std::string& request, const ScriptedPeer::Reply& reply) {
        reply(masterResponse(idOfRequest(request), 0, 3));
    });
    NetFPMasterCom first;
    ASSERT_TRUE(first.connect());

    ASSERT_TRUE(connect());

    EXPECT_EQ(client.getSwitchPortForInterface("eth1"), 3);
}

TEST_F(NetFPMasterComConnectTest, LeavesTheSocketFileBehind) {
    ASSERT_TRUE(connect());

    EXPECT_TRUE(close());

    EXPECT_EQ(printed, Printed{});
    EXPECT_TRUE(fs::is_socket(usualPath));
}

TEST_F(NetFPMasterComConnectTest, CanBeConnectedAgainAfterClose) {
    ASSERT_TRUE(connect());
    ASSERT_TRUE(close());
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(connect());

    EXPECT_EQ(printed, (Printed{.out = "Creating Socket for Client\n"
                                       "Binding to Client Socket \"/tmp/Korvel\"\n"}));
}

TEST_F(NetFPMasterComConnectTest, ReportsACloseWithoutAConnectAndReturnsTrue) {
    EXPECT_TRUE(close());

    EXPECT_EQ(printed, (Printed{.err = "Client Socket not connected\n"}));
}

TEST_F(NetFPMasterComConnectTest, ReportsAFailedCloseAndIsNotConnectedAfterwards) {
    ASSERT_TRUE(connect());
    bool done = true;

    runFailing({.number = SYS_close, .error = EIO}, [&] { done = close(); });

    EXPECT_FALSE(done);
    EXPECT_EQ(printed, (Printed{.err = "Client Socket Close Failed: 5: Input/output error\n"}));
    expectNotConnected();
}

TEST_F(NetFPMasterComConnectTest, IsClosedByItsDestructor) {
    auto shortLived = std::make_unique<NetFPMasterCom>();
    ASSERT_TRUE(shortLived->connect());
    Korvel::setVerboseMode(true);

    EXPECT_EQ(printedBy([&] { shortLived.reset(); }), (Printed{.out = "Client Socket closed\n"}));
}

TEST_F(NetFPMasterComConnectTest, IsNotClosedByItsDestructorIfItWasNeverConnected) {
    auto shortLived = std::make_unique<NetFPMasterCom>();
    Korvel::setVerboseMode(true);

    EXPECT_EQ(printedBy([&] { shortLived.reset(); }), Printed{});
}

TEST_F(NetFPMasterComConnectTest, KeepsItsDescriptorFromOtherPrograms) {
    const std::string before = inheritedDescriptors();

    ASSERT_TRUE(connect());

    EXPECT_EQ(inheritedDescriptors(), before);
}

TEST_F(NetFPMasterComConnectTest, NeverTreatsDescriptor0AsAConnectedSocket) {
    bool done = false;
    const Base::UniqueFd standardInput(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));

    printed = printedBy([&] {
        ::close(STDIN_FILENO);  // the socket becomes descriptor 0
        done = client.connect();
    });

    EXPECT_TRUE(done);
    expectNotConnected();
    ::dup2(standardInput.get(), STDIN_FILENO);
}

TEST_F(NetFPMasterComConnectTest, ReportsAFailedSocketCall) {
    bool done = true;
    runFailing({.number = SYS_socket, .error = EMFILE}, [&] { done = connect(); });

    EXPECT_FALSE(done);
    EXPECT_EQ(printed, (Printed{.err = "Client Socket Creation Failed: 24: Too many open files\n"}));
    expectNotConnected();
}

TEST_F(NetFPMasterComConnectTest, UsesASocketWithoutASendTimeOut) {
    bool done = false;
    runFailing({.number = SYS_setsockopt, .error = ENOBUFS}, [&] { done = connect(); });

    EXPECT_TRUE(done);
    EXPECT_EQ(printed, Printed{});
}

TEST_F(NetFPMasterComConnectTest, ReportsAPathThatCannotBeBound) {
    fs::create_directory("/tmp/folder");
    const struct {
        std::string path;
        std::string message;
    } cases[] = {
        {"/tmp/missing/Korvel", "Failed to Bind to Client Socket: 2: No such file or directory\n"},
        {"/tmp/folder", "Failed to Bind to Client Socket: 98: Address already in use\n"},
        {std::string(108, 'c'), "Failed to Bind to Client Socket: 36: File name too long\n"},
        {std::string(4096, 'c'), "Failed to Bind to Client Socket: 36: File name too long\n"},
    };
    for (const auto& [path, message] : cases) {
        NetFPMasterCom::setClientSocketPath(path);

        EXPECT_FALSE(connect());
        EXPECT_EQ(printed, Printed{.err = message});
        expectNotConnected();
    }
}

TEST_F(NetFPMasterComConnectTest, BindsAPathAsLongAsAnAddressHolds) {
    const std::string path = "/tmp/" + std::string(102, 'c');
    ASSERT_EQ(path.size(), 107);
    NetFPMasterCom::setClientSocketPath(path);

    EXPECT_TRUE(connect());

    EXPECT_TRUE(fs::is_socket(path));
}
