#include "ResetQoSStatsFixture.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "ArgumentVector.hpp"
#include "ResetQoSStatsAction.hpp"
#include "SocketAddress.hpp"
#include "UniqueFd.hpp"

const std::string ResetQoSStatsFixture::marker = "<MMI_END_OF_MSG>";
const std::string ResetQoSStatsFixture::timedOut = "poll(): Timed out while waiting for response\n";

void ResetQoSStatsFixture::select(Korvel::Configuration::DispatcherInstance instance) {
    Korvel::Configuration::setDispatcherInstance(instance);
}

void ResetQoSStatsFixture::answers(ScriptedPeer& service, const Datagrams& datagrams) {
    service.answers([datagrams](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        for (const std::string& datagram : datagrams) {
            reply(datagram);
        }
    });
}

void ResetQoSStatsFixture::sendFromElsewhere(std::string_view bytes) {
    const Base::UniqueFd socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(4141);
    ::inet_pton(AF_INET, "127.0.0.2", &address.sin_addr);
    const ssize_t sent =
        ::sendto(socket.get(), bytes.data(), bytes.size(), 0, Base::genericAddress(address), sizeof address);
    EXPECT_EQ(sent, static_cast<ssize_t>(bytes.size()));
}

bool ResetQoSStatsFixture::reset(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{"resetqosstats"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    ArgumentVector vector(words);
    bool success = false;
    printed = printedBy([&] {
        Korvel::ResetQoSStatsAction action;
        success = action.run(vector.argc(), vector.argv());
    });
    return success;
}
