#include "DispatcherSelection.hpp"

#include "Config.hpp"
#include "Configuration.hpp"
#include "Console.hpp"

namespace Korvel {
namespace {

void selectOne(Configuration::DispatcherInstance instance) {
    Configuration::setDispatcherInstance(instance);
    progress("Communicating with ", Configuration::dispInstanceToString(instance), " dispatcher");
}

}  // namespace

void selectDispatcherFromOption(const std::string& type) {
    if (type == "sfn") {
        selectOne(Configuration::SFN);
    } else if (type == "iwf") {
        selectOne(Configuration::IWF);
    } else if (type == "all") {
        Configuration::setDispatcherInstance(Configuration::IWF);
        Configuration::setDispatcherInstance(Configuration::SFN);
        progress("Communicating with both dispatchers");
    } else {
        progress("Invalid dispatcher type specified: ", type, ". Using default instance (IWF)");
    }
}

void selectDispatcherFromPlatform(const Config& platform) {
    if (Configuration::getInstanceCount() != 0) {
        return;
    }
    if (platform.shouldStartIWF()) {
        Configuration::setDispatcherInstance(Configuration::IWF);
    }
    if (platform.shouldStartSFN()) {
        Configuration::setDispatcherInstance(Configuration::SFN);
    }
}

}  // namespace Korvel
