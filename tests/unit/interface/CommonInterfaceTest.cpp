// The interface of src/common except the platform's configuration.

#include <concepts>
#include <cstdint>
#include <set>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "Arguments.hpp"
#include "Configuration.hpp"
#include "ConsoleHeader.hpp"
#include "FileReader.hpp"
#include "IManager.hpp"
#include "Log.hpp"
#include "Shell.hpp"
#include "SmLogReader.hpp"
#include "Timestamp.hpp"
#include "VerboseMode.hpp"
#include "Words.hpp"

namespace {

namespace Configuration = Korvel::Configuration;
using Configuration::DispatcherInstance;
using Korvel::IManager;
using Korvel::LogLvl;
using std::same_as;

struct Manager : IManager {
    using IManager::IManager;
    bool detectKeywords(int /*argc*/, char** /*argv*/) override { return false; }
    void printHelpMsg(const std::string& /*indent*/, const std::string& /*programName*/) override {}
};

static_assert(std::is_abstract_v<IManager> && std::has_virtual_destructor_v<IManager>);
static_assert(std::constructible_from<Manager, const std::string&>);
static_assert(requires(const IManager& named, IManager& manager, int argc, char** argv,
                       const std::string& text) {
    { named.getName() } -> same_as<std::string>;
    { manager.detectKeywords(argc, argv) } -> same_as<bool>;
    { manager.printHelpMsg(text, text) } -> same_as<void>;
    { manager.resolveRequest(argc, argv) } -> same_as<bool>;
    { manager.run() } -> same_as<bool>;
});

static_assert(std::is_enum_v<DispatcherInstance>);
static_assert(requires(Configuration::Config & config) {
    { (config.localPort) } -> same_as<std::uint16_t&>;
    { (config.dispatcherPort) } -> same_as<std::uint16_t&>;
    { (config.dispatcherAddress) } -> same_as<std::string&>;
    { (config.receiveBufferSize) } -> same_as<std::uint32_t&>;
    { (config.endOfMessageMarker) } -> same_as<std::string&>;
});
static_assert(requires(DispatcherInstance instance) {
    { Configuration::setDispatcherInstance(instance) } -> same_as<void>;
    { Configuration::dispInstanceToString(instance) } -> same_as<std::string>;
    { Configuration::getInstanceCount() } -> same_as<unsigned>;
    { *Configuration::getInstanceBegin() } -> same_as<const DispatcherInstance&>;
    { *Configuration::getInstanceEnd() } -> same_as<const DispatcherInstance&>;
    { Configuration::getConfig(instance) } -> same_as<Configuration::Config&>;
    { Configuration::setCollectLogsOnExit() } -> same_as<void>;
    { Configuration::getCollectLogsOnExit() } -> same_as<bool>;
});

static_assert(std::convertible_to<LogLvl, int>);
static_assert(requires(LogLvl level, int number, const char* text) {
    { Korvel::logf(level, "%s", text) } -> same_as<void>;
    { Korvel::logf(number, "%s", text) } -> same_as<void>;
    { Korvel::logLvlToPriority(level) } -> same_as<int>;
    { Korvel::logLvlToPriority(number) } -> same_as<int>;
});

static_assert(requires(bool enabled, const std::string& text, unsigned number, int argc, char** argv,
                       const char* logName, AppID app) {
    { Korvel::setVerboseMode(enabled) } -> same_as<void>;
    { Korvel::isVerboseMode() } -> same_as<bool>;
    { Korvel::getTimestamp() } -> same_as<std::string>;
    { Korvel::getCurrentDateTime() } -> same_as<std::string>;
    { Korvel::readFileToString(text) } -> same_as<std::string>;
    { Korvel::getNthTokenFromString(text, number) } -> same_as<std::string>;
    { Korvel::getNumberOfLinesInFile(text) } -> same_as<unsigned>;
    { Korvel::readFileFromLine(text, number) } -> same_as<std::string>;
    { Korvel::removeArgument(1, argc, argv) } -> same_as<void>;
    { Korvel::readSmLog(logName, number, app) } -> same_as<std::string>;
    { Korvel::printLogHeader(text) } -> same_as<void>;
    { Korvel::executeCommand(text) } -> same_as<bool>;
});

TEST(CommonInterface, NumbersTheLevels) {
    EXPECT_EQ(int{Korvel::logError}, 0);
    EXPECT_EQ(int{Korvel::logWarning}, 1);
    EXPECT_EQ(int{Korvel::logInformation}, 2);
    EXPECT_EQ(int{Korvel::logDebug}, 3);
}

TEST(CommonInterface, NumbersTheDispatcherInstances) {
    EXPECT_EQ(int{Configuration::IWF}, 0);
    EXPECT_EQ(int{Configuration::SFN}, 1);
}

TEST(CommonInterface, LetsAManagerInheritTheDefaults) {
    Manager manager("Name");

    EXPECT_EQ(manager.getName(), "Name");
    EXPECT_TRUE(manager.resolveRequest(0, nullptr));
    EXPECT_TRUE(manager.run());
}

}  // namespace
