// MMI replies. The first byte limits the size of a reply, the rest is the datagrams.

#include <string>

#include "Configuration.hpp"
#include "FakeKernel.hpp"
#include "FuzzTarget.hpp"
#include "MmiChannel.hpp"
#include "QuietConsole.hpp"

namespace {

using Fuzz::require;

void checkReply(const std::string& reply, std::size_t limit) {
    require(reply.size() <= limit, "a reply is cut at its limit");
    require(reply.find('\0') == std::string::npos, "a reply is a text");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t unit = 16;
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    const std::size_t limit = static_cast<std::size_t>(input.number(1)) * unit;
    const Fuzz::FakeKernel kernel(input);
    const Fuzz::QuietConsole console;
    Korvel::MmiChannel channel(getConfig(Korvel::Configuration::IWF));
    require(channel.open(), "a channel needs nobody else");
    do {
        std::string reply;
        const auto start = kernel.now();
        require(channel.query("HeapStats", reply, limit) || reply.empty(), "no command, no reply");
        checkReply(reply, limit);
        require(kernel.now() - start <= std::chrono::seconds(61), "a reply ends");
    } while (!input.isAtEnd());
    channel.close();
    return 0;
}
