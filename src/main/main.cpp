#include <algorithm>
#include <exception>
#include <stdexcept>

#include "CommandLanguage.hpp"
#include "CommonOptions.hpp"
#include "Config.hpp"
#include "Configuration.hpp"
#include "Console.hpp"
#include "ConsoleStreams.hpp"
#include "DispatcherSelection.hpp"
#include "IdentifierSeed.hpp"
#include "Managers.hpp"
#include "MemoryUse.hpp"
#include "SignalDispositions.hpp"
#include "StandardStreams.hpp"
#include "Usage.hpp"

namespace Korvel {
namespace {

const char* const configurationFile = "/rom/private/fpdispatcher.conf";

/// Returns the first manager that accepts the command line, or null.
IManager* findManager(int argc, char** argv) {
    const auto manager = std::find_if(managers.begin(), managers.end(), [&](const auto& candidate) {
        return candidate->detectKeywords(argc, argv);
    });
    return manager == managers.end() ? nullptr : manager->get();
}

/// Actions throw if a number on the command line is out of range; the text of the exception is the message
/// for the operator.
bool resolve(IManager& manager, int argc, char** argv) {
    try {
        return manager.resolveRequest(argc, argv);
    } catch (const std::out_of_range& number) {
        return fail(number.what());
    }
}

bool execute(IManager& manager, int argc, char** argv) {
    progress("Detected ", manager.getName(), " keywords.");
    if (!resolve(manager, argc, argv)) {
        progress(manager.getName(), " Failed to process the request.");
        return false;
    }
    return manager.run();
}

bool runCommandLine(int argc, char** argv) {
    registerManagers();
    if (consumeCommonOptions(argc, argv) == OptionsResult::helpRequested) {
        printUsage(argc, argv);
        return true;
    }
    const Config platform(configurationFile);
    if (platform.shouldCollectLogOnExit()) {
        Configuration::setCollectLogsOnExit();
    }
    selectDispatcherFromPlatform(platform);
    IManager* const manager = findManager(argc, argv);
    if (manager == nullptr) {
        print("Did not detect a supported Keyword.\n", "Use \"", argc > 0 ? argv[0] : "",
              " --help\" for help.\n");
        return false;
    }
    return execute(*manager, argc, argv);
}

}  // namespace
}  // namespace Korvel

int main(int argc, char** argv) {
    Korvel::openMissingStandardStreams();
    Korvel::setSignalDispositions();
    Korvel::returnMemoryEarly();
    const Korvel::ConsoleStreams streams;
    Korvel::setCommandLanguage();
    Korvel::seedRequestIdentifiers();
    bool success = false;
    try {
        success = Korvel::runCommandLine(argc, argv);
    } catch (const std::exception& failure) {
        Korvel::fail("Error: ", failure.what());
    }
    return Korvel::finishStandardOutput() && success ? 0 : 1;
}
