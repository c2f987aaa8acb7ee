#include "PortSwapFixture.hpp"

#include <memory>
#include <utility>

#include <unistd.h>

#include "NetfpMasterWire.hpp"
#include "WireNumber.hpp"

namespace {

constexpr std::size_t nameSize = 32;
constexpr std::size_t currentNameOffset = 8;
constexpr std::size_t newNameOffset = currentNameOffset + nameSize;
constexpr std::uint32_t renameInterface = 6;
constexpr int refusedRename = -5;

std::string nameAt(const std::string& request, std::size_t offset) {
    return textAt(request, offset, nameSize);
}

std::string field(const std::string& name) {
    std::string bytes = name;
    bytes.resize(nameSize);
    return bytes;
}

}  // namespace

void PortSwapFixture::givenRenamingMaster(const std::map<std::string, int>& ports,
                                          const std::map<int, Rename>& exceptions) {
    struct State {
        std::map<std::string, int> ports;
        int renames = 0;
    };
    const auto state = std::make_shared<State>(State{.ports = ports});
    master.answers([=](const std::string& request, const ScriptedPeer::Reply& reply) {
        const std::uint32_t id = idOfRequest(request);
        const auto row = state->ports.find(nameAt(request, currentNameOffset));
        const bool known = row != state->ports.end();
        if (numberAt(request, 0) == getSwitchPort) {
            reply(known ? masterResponse(id, 0, row->second) : masterResponse(id, unknownInterface));
            return;
        }
        const auto exception = exceptions.find(++state->renames);
        if (exception == exceptions.end() && known) {
            const int port = row->second;
            state->ports.erase(row);
            state->ports[nameAt(request, newNameOffset)] = port;
        }
        if (exception == exceptions.end() || exception->second == Rename::ignored) {
            reply(masterResponse(id, 0));
        } else if (exception->second == Rename::refused) {
            reply(masterResponse(id, refusedRename));
        }
    });
}

void PortSwapFixture::givenRenamingMaster(const std::map<int, Rename>& exceptions) {
    givenRenamingMaster({{"eth0", 1}, {"eth1", 2}}, exceptions);
}

void PortSwapFixture::givenMasterThatLeavesAfter(std::size_t requestCount) {
    const auto left = std::make_shared<std::size_t>(requestCount);
    master.answers([=](const std::string& request, const ScriptedPeer::Reply& reply) {
        if (--*left == 0) {
            ::unlink("/tmp/NetfpMaster");
        }
        reply(masterResponse(idOfRequest(request), 0, 1));
    });
}

bool PortSwapFixture::swap(const std::vector<std::string>& interfaces) {
    std::vector<std::string> words{"portswap"};
    words.insert(words.end(), interfaces.begin(), interfaces.end());
    return run(action, words);
}

void PortSwapFixture::expectFailure(const std::string& message) {
    EXPECT_FALSE(swap({"eth0", "eth1"}));
    EXPECT_EQ(printed, (Printed{.err = message}));
}

std::string PortSwapFixture::lookUp(const std::string& name) {
    return masterRequest(getSwitchPort, 0, name);
}

std::string PortSwapFixture::rename(const std::string& currentName, const std::string& newName) {
    return masterRequest(renameInterface, 0, field(currentName) + field(newName));
}
