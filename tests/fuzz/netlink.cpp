// Netlink datagrams: responses of netfp_proxy, and payloads of any size. The first two bytes are that size,
// the rest is the datagrams.

#include "Netlink.hpp"

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "BoardLibraries.hpp"
#include "FakeKernel.hpp"
#include "FastPathNetlink.hpp"
#include "FuzzTarget.hpp"
#include "NetlinkSocket.hpp"
#include "QuietConsole.hpp"

namespace {

using Fuzz::FakeKernel;
using Fuzz::require;
using Util::NetlinkHelper;

constexpr std::chrono::seconds timeout{2};

SmLog* log() {
    return SmLog::getClientInstance("fuzz", 0);
}

/// The payload of the datagram that came last.
std::string_view lastPayload() {
    const std::string_view datagram = FakeKernel::current().received();
    return datagram.substr(std::min(datagram.size(), Util::netlinkHeaderSize));
}

void receiveBytes(unsigned expected) {
    NetlinkHelper helper(log());
    require(helper.open(), "a socket needs nobody else");
    // Exactly as large as wanted, so that the sanitizer sees a byte too many.
    const auto buffer = std::make_unique<char[]>(expected);
    unsigned sequence = 0;
    const int size = helper.receive(buffer.get(), expected, timeout, sequence);
    require(size >= NetlinkHelper::failed && size <= static_cast<int>(expected), "a payload fits");
    if (size >= 0) {
        const std::string_view received(buffer.get(), static_cast<std::size_t>(size));
        require(received == lastPayload().substr(0, expected), "a payload is what was sent");
    }
    require(helper.close(), "a socket closes");
}

void receiveResponse() {
    Util::Netlink<NetfpProxy_AddInterfaceReq, NetfpProxy_AddInterfaceResp> proxy(FASTPATH_NETFP_PROXY_PORT_ID,
                                                                                 log());
    NetfpProxy_AddInterfaceReq request{};
    NetfpProxy_AddInterfaceResp response{};
    require(proxy.open(), "a socket needs nobody else");
    const bool received = proxy.send(request, 0) && proxy.receive(response, timeout);
    const std::string_view bytes(reinterpret_cast<const char*>(&response), sizeof response);
    require(!received || lastPayload().starts_with(bytes), "a response is what was sent");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr unsigned tooLarge = 4100;
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    const auto expected = static_cast<unsigned>(input.number(2)) % tooLarge;
    const FakeKernel kernel(input);
    const Fuzz::QuietConsole console;
    receiveBytes(expected);
    receiveResponse();
    return 0;
}
