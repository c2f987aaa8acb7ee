#include "MmiLogCollectorFixture.hpp"

#include <filesystem>

#include "Configuration.hpp"
#include "VerboseMode.hpp"

const std::string MmiLogCollectorFixture::marker = "<MMI_END_OF_MSG>";

void MmiLogCollectorFixture::SetUp() {
    std::filesystem::remove_all("/tmp/korvel");
}

void MmiLogCollectorFixture::TearDown() {
    Korvel::setVerboseMode(false);
}

void MmiLogCollectorFixture::selectIwf() {
    Korvel::Configuration::setDispatcherInstance(Korvel::Configuration::IWF);
}

void MmiLogCollectorFixture::selectSfn() {
    Korvel::Configuration::setDispatcherInstance(Korvel::Configuration::SFN);
}

void MmiLogCollectorFixture::answers(ScriptedPeer& service, const Datagrams& datagrams) {
    service.answers([datagrams](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        for (const std::string& datagram : datagrams) {
            reply(datagram);
        }
    });
}

void MmiLogCollectorFixture::repeatsCommands(ScriptedPeer& service) {
    service.answers([](const std::string& request, const ScriptedPeer::Reply& reply) {
        reply(request);
        reply(marker);
    });
}

Printed MmiLogCollectorFixture::collect() {
    return printedBy([&] { succeeded = collector->collectLogs(false); });
}

Printed MmiLogCollectorFixture::collect(unsigned mask) {
    create(mask);
    return collect();
}

Printed MmiLogCollectorFixture::show() {
    return printedBy([&] { collector->printOnConsole(); });
}

Printed MmiLogCollectorFixture::dump() {
    return printedBy([&] { collector->dumpToFiles(); });
}
