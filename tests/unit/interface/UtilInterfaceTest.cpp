// The interface of src/util.

#include <chrono>
#include <concepts>
#include <type_traits>

#include "FastPathNetlink.hpp"
#include "Netlink.hpp"
#include "NetlinkHelper.hpp"

namespace {

using std::same_as;
using std::chrono::milliseconds;
using Util::NetlinkHelper;

using Channel = Util::Netlink<NetfpProxy_AddInterfaceReq, NetfpProxy_AddInterfaceResp>;

static_assert(std::has_virtual_destructor_v<NetlinkHelper>);
static_assert(std::constructible_from<NetlinkHelper, SmLog*>);
static_assert(requires(NetlinkHelper & helper, const char* payload, char* buffer, unsigned number,
                       unsigned& sequence) {
    { helper.open() } -> same_as<bool>;
    { helper.send(payload, number, number, number) } -> same_as<bool>;
    { helper.receive(buffer, number, milliseconds(1), sequence) } -> same_as<int>;
    { helper.close() } -> same_as<bool>;
});

static_assert(std::derived_from<Channel, NetlinkHelper> && std::constructible_from<Channel, int, SmLog*>);
static_assert(requires(Channel & channel, const NetfpProxy_AddInterfaceReq& request,
                       NetfpProxy_AddInterfaceResp& response, unsigned& sequence) {
    { channel.open() } -> same_as<bool>;
    { channel.send(request, sequence) } -> same_as<bool>;
    { channel.receive(response, milliseconds(1), sequence) } -> same_as<bool>;
    { channel.receive(response, std::chrono::seconds(2)) } -> same_as<bool>;
    { channel.close() } -> same_as<bool>;
});

}  // namespace
