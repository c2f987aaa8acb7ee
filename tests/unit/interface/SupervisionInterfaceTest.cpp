// The interface of src/supervision.

#include <concepts>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "HeartbeatRespStatus.hpp"
#include "SupervisionMgr.hpp"

namespace {

using Korvel::HeartbeatRespStatus;
using Korvel::LogLvl;
using Korvel::SupervisionMgr;
using std::same_as;

using Status = HeartbeatRespStatus::Status;

static_assert(std::is_enum_v<Status>);
static_assert(requires(HeartbeatRespStatus & status) {
    { (status.netfpProxy) } -> same_as<Status&>;
    { (status.iwf) } -> same_as<Status&>;
    { (status.sfn) } -> same_as<Status&>;
    { HeartbeatRespStatus::toString(status.iwf) } -> same_as<std::string>;
});

static_assert(std::derived_from<SupervisionMgr, Korvel::IManager> &&
              std::default_initializable<SupervisionMgr>);
static_assert(requires(SupervisionMgr & manager, int argc, char** argv, const std::string& text) {
    { manager.detectKeywords(argc, argv) } -> same_as<bool>;
    { manager.printHelpMsg(text, text) } -> same_as<void>;
    { manager.run() } -> same_as<bool>;
});
static_assert(requires(SupervisionMgr & manager, const SupervisionMgr& fixed,
                       const HeartbeatRespStatus& status, LogLvl level, int number, const char* text) {
    { manager.initialize() } -> same_as<bool>;
    { manager.heartbeatMonitor() } -> same_as<void>;
    { manager.cleanup() } -> same_as<void>;
    { manager.sendDispatcherHeartbeatReq(number) } -> same_as<void>;
    { manager.sendNetfpProxyHearbeatReq() } -> same_as<void>;
    { manager.waitForHeartbeatsResp() } -> same_as<int>;
    { fixed.getStatusStr(status) } -> same_as<std::string>;
    { manager.logf(level, "%s", text) } -> same_as<void>;
    { manager.logf(number, "%s", text) } -> same_as<void>;
});

TEST(SupervisionInterface, NamesTheManager) {
    EXPECT_EQ(SupervisionMgr().getName(), "Supervision");
}

TEST(SupervisionInterface, NumbersTheAnswersOfAPeer) {
    EXPECT_EQ(HeartbeatRespStatus::toString(Status{0}), "NOT_RECEIVED");
    EXPECT_EQ(HeartbeatRespStatus::toString(Status{1}), "OK");
    EXPECT_EQ(HeartbeatRespStatus::toString(Status{2}), "ERROR");
    EXPECT_EQ(HeartbeatRespStatus::toString(Status{3}), "");
}

TEST(SupervisionInterface, StartsWithNothingReceived) {
    const auto& [netfpProxy, iwf, sfn] = HeartbeatRespStatus{};

    EXPECT_EQ(netfpProxy, Status{0});
    EXPECT_EQ(iwf, Status{0});
    EXPECT_EQ(sfn, Status{0});
}

}  // namespace
