// Heartbeat responses. The input is the datagrams that a whole supervision receives.

#include <string>

#include "Configuration.hpp"
#include "FakeKernel.hpp"
#include "FuzzTarget.hpp"
#include "QuietConsole.hpp"
#include "SupervisionMgr.hpp"

namespace {

using Fuzz::require;

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    const Fuzz::FakeKernel kernel(input);
    const Fuzz::QuietConsole console;
    Korvel::Configuration::setDispatcherInstance(Korvel::Configuration::IWF);
    Korvel::Configuration::setDispatcherInstance(Korvel::Configuration::SFN);
    Korvel::SupervisionMgr supervision;
    require(!supervision.run(), "a supervision that ends has failed");
    const std::string output = console.output();
    require(output.empty() || output.starts_with("Heartbeat status: "), "only the status is printed");
    return 0;
}
