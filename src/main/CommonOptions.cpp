#include "CommonOptions.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "Arguments.hpp"
#include "Console.hpp"
#include "DispatcherSelection.hpp"
#include "NetFPMasterCom.hpp"

namespace Korvel {
namespace {

void enableVerboseMode() {
    setVerboseMode(true);
    print("Verbose mode enabled.\n");
}

void setClientPath(const std::string& path) {
    NetFPMasterCom::setClientSocketPath(path);
    progress("Using provided client path ", NetFPMasterCom::getClientSocketPath());
}

void setMasterPath(const std::string& path) {
    NetFPMasterCom::setMasterSocketPath(path);
    progress("Using provided master path ", NetFPMasterCom::getMasterSocketPath());
}

struct OptionWithValue {
    std::string_view word;
    std::string_view missingValueMessage;
    void (*apply)(const std::string& value);
};

constexpr std::array optionsWithValue{
    OptionWithValue{"-c", "Found -c option without client socket path", setClientPath},
    OptionWithValue{"-m", "Found -m option without master socket path", setMasterPath},
    OptionWithValue{"-d", "Found -d option without dispatcher instance", selectDispatcherFromOption},
};

void removeAt(int index, int& argc, char** argv) {
    removeArgument(index, argc, argv);
    --argc;
}

/// Applies the option at `index` and removes it with its value. If it is the last argument, removes only the
/// option.
void applyOption(const OptionWithValue& option, int index, int& argc, char** argv) {
    if (index + 1 < argc) {
        removeAt(index, argc, argv);
        option.apply(argv[index]);
    } else {
        progress(option.missingValueMessage);
    }
    removeAt(index, argc, argv);
}

}  // namespace

OptionsResult consumeCommonOptions(int& argc, char** argv) {
    int index = 1;
    while (index < argc) {
        const std::string_view word = argv[index];
        const auto* const option = std::find_if(optionsWithValue.begin(), optionsWithValue.end(),
                                                [&](const auto& row) { return row.word == word; });
        if (word == "-v") {
            enableVerboseMode();
            removeAt(index, argc, argv);
        } else if (option != optionsWithValue.end()) {
            applyOption(*option, index, argc, argv);
        } else if (word == "--help") {
            return OptionsResult::helpRequested;
        } else {
            ++index;
        }
    }
    return OptionsResult::proceed;
}

}  // namespace Korvel
