#include "PortActionFixture.hpp"

#include <memory>

#include "ArgumentVector.hpp"
#include "NetfpMasterWire.hpp"
#include "VerboseMode.hpp"
#include "WireNumber.hpp"

namespace {

constexpr std::size_t bodyOffset = 8;

std::string nameIn(const std::string& request) {
    return textAt(request, bodyOffset, 32);
}

}  // namespace

void PortActionFixture::TearDown() {
    Korvel::setVerboseMode(false);
}

void PortActionFixture::givenMaster(const std::map<std::string, int>& ports) {
    givenMaster(ports, [](std::size_t /*number*/) { return 0; });
}

void PortActionFixture::givenMaster(const std::map<std::string, int>& ports,
                                    std::function<int(std::size_t)> errorOf) {
    const auto count = std::make_shared<std::size_t>(0);
    master.answers([=, errorOf = std::move(errorOf)](const std::string& request,
                                                     const ScriptedPeer::Reply& reply) {
        const std::uint32_t id = idOfRequest(request);
        if (numberAt(request, 0) != getSwitchPort) {
            reply(masterResponse(id, errorOf((*count)++)));
            return;
        }
        const auto row = ports.find(nameIn(request));
        reply(row == ports.end() ? masterResponse(id, unknownInterface) : masterResponse(id, 0, row->second));
    });
}

bool PortActionFixture::run(Korvel::SimpleAction& action, const std::vector<std::string>& words) {
    ArgumentVector vector(words);
    bool success = false;
    printed = printedBy([&] { success = action.run(vector.argc(), vector.argv()); });
    return success;
}

std::vector<std::string> PortActionFixture::requests() const {
    std::vector<std::string> seen;
    for (const std::string& request : master.requests()) {
        const bool lookUp = numberAt(request, 0) == getSwitchPort;
        seen.push_back(lookUp ? "port " + nameIn(request) : request.substr(bodyOffset));
    }
    return seen;
}
