// The interface of src/actions.

#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "ActionMgr.hpp"
#include "AddInterfaceAction.hpp"
#include "AddMulticastMACAction.hpp"
#include "Configuration.hpp"
#include "Descriptor.hpp"
#include "DescriptorDumpAction.hpp"
#include "GetPortAction.hpp"
#include "LoopbackPortAction.hpp"
#include "MemoryDumpAction.hpp"
#include "MirrorPortAction.hpp"
#include "PortSwapAction.hpp"
#include "ResetQoSStatsAction.hpp"
#include "SimpleAction.hpp"

namespace {

using namespace Korvel;
using std::same_as;

template <typename Action>
concept AnAction = std::derived_from<Action, SimpleAction> && std::default_initializable<Action>;

static_assert(std::is_abstract_v<SimpleAction> && std::has_virtual_destructor_v<SimpleAction>);
static_assert(requires(SimpleAction & action, int argc, char** argv, const std::string& text) {
    { action.getKeyword() } -> same_as<std::string>;
    { action.run(argc, argv) } -> same_as<bool>;
    { action.printHelpMsg(text, text) } -> same_as<void>;
});

static_assert(std::derived_from<ActionMgr, IManager> && std::default_initializable<ActionMgr>);
static_assert(requires(ActionMgr & manager, int argc, char** argv, const std::string& text) {
    { manager.detectKeywords(argc, argv) } -> same_as<bool>;
    { manager.resolveRequest(argc, argv) } -> same_as<bool>;
    { manager.printHelpMsg(text, text) } -> same_as<void>;
});

static_assert(AnAction<GetPortAction>);

static_assert(AnAction<MirrorPortAction>);
static_assert(requires(MirrorPortAction & action, const std::string& argument, bool enable, int port) {
    { action.retrievePortNumber(argument) } -> same_as<int>;
    { action.executePortMirrorCommand(enable, port, port) } -> same_as<void>;
});

static_assert(AnAction<LoopbackPortAction>);
static_assert(requires(LoopbackPortAction & action, bool enable, int port) {
    { action.executeLoopbackCommand(enable, port) } -> same_as<bool>;
});

static_assert(AnAction<MemoryDumpAction>);
static_assert(same_as<decltype(MemoryDumpAction::keyword), const std::string>);
static_assert(requires(MemoryDumpAction & action, int argc, char** argv, unsigned number, const void* data) {
    { action.parseCommand(argc, argv) } -> same_as<bool>;
    { action.initializeCma() } -> same_as<bool>;
    { action.physicalToVirtual(number) } -> same_as<void*>;
    { action.printMemory() } -> same_as<void>;
    { action.hexDump(data, number) } -> same_as<void>;
});

static_assert(AnAction<DescriptorDumpAction> && std::derived_from<DescriptorDumpAction, MemoryDumpAction>);
static_assert(same_as<decltype(DescriptorDumpAction::keyword), const std::string>);
static_assert(requires(DescriptorDumpAction & action, int argc, char** argv) {
    { action.parseCommand(argc, argv) } -> same_as<bool>;
    { action.printDescriptor() } -> same_as<void>;
    { action.printBuffer() } -> same_as<void>;
});

static_assert(requires(const FPDisp::Descriptor& descriptor) {
    { descriptor.getBufLength() } -> same_as<std::uint32_t>;
    { descriptor.getBufPtr() } -> same_as<std::uint32_t>;
    { descriptor.getOrigBufLength() } -> same_as<std::uint32_t>;
    { descriptor.getOrigBufPtr() } -> same_as<std::uint32_t>;
});

static_assert(AnAction<PortSwapAction>);
static_assert(requires(PortSwapAction & action, const std::string& name) {
    { action.getIntfPort(name) } -> same_as<int>;
    { action.renameIntf(name, name) } -> same_as<int>;
    { action.swapPort() } -> same_as<int>;
});

static_assert(AnAction<ResetQoSStatsAction>);
static_assert(requires(ResetQoSStatsAction & action, const Configuration::Config& config,
                       const Configuration::DispatcherInstance& instance) {
    { action.initialize() } -> same_as<bool>;
    { action.sendCleanStatsReq(config) } -> same_as<int>;
    { action.waitForResp(instance) } -> same_as<bool>;
});

static_assert(AnAction<AddMulticastMACAction>);
static_assert(requires(AddMulticastMACAction & action) {
    { action.addMulticastMAC() } -> same_as<bool>;
});

static_assert(AnAction<AddInterfaceAction>);
static_assert(same_as<decltype(AddInterfaceAction::keyword), const std::string>);
static_assert(requires(AddInterfaceAction & action, int argc, char** argv) {
    { action.parseParameters(argc, argv) } -> same_as<bool>;
    { action.handleRequest() } -> same_as<bool>;
});

TEST(ActionsInterface, HasKeywordsThatNeedNoAction) {
    EXPECT_EQ(MemoryDumpAction::keyword, "mem_dump");
    EXPECT_EQ(DescriptorDumpAction::keyword, "desc_dump");
    EXPECT_EQ(AddInterfaceAction::keyword, "add_interface");
}

TEST(ActionsInterface, NamesTheManager) {
    EXPECT_EQ(ActionMgr().getName(), "Action");
}

}  // namespace
