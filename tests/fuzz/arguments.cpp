// Command lines. The input is the words, one a line, a zero byte, and what peers send to the action.

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "ActionMgr.hpp"
#include "CollectionKeywords.hpp"
#include "CollectorMgr.hpp"
#include "CommonOptions.hpp"
#include "Configuration.hpp"
#include "Console.hpp"
#include "FakeKernel.hpp"
#include "FuzzTarget.hpp"
#include "Managers.hpp"
#include "NetFPMasterCom.hpp"
#include "QuietConsole.hpp"
#include "Usage.hpp"

namespace {

using Fuzz::require;

/// An argument vector as main() gets it.
class CommandLine {
public:
    explicit CommandLine(Fuzz::FuzzInput words) {
        texts.emplace_back("korvel");
        while (!words.isAtEnd()) {
            texts.emplace_back(words.textUntil('\n'));
        }
        for (std::string& text : texts) {
            pointers.push_back(text.data());
        }
        count = static_cast<int>(pointers.size());
        pointers.push_back(nullptr);
    }

    char** argv() { return pointers.data(); }
    int& argc() { return count; }

private:
    std::vector<std::string> texts;
    std::vector<char*> pointers;
    int count = 0;
};

/// As before the program began.
void resetOptions() {
    Korvel::setVerboseMode(false);
    Korvel::NetFPMasterCom::setClientSocketPath("/tmp/Korvel");
    Korvel::NetFPMasterCom::setMasterSocketPath("/tmp/NetfpMaster");
    Korvel::Configuration::setDispatcherInstance(Korvel::Configuration::IWF);
    Korvel::Configuration::setDispatcherInstance(Korvel::Configuration::SFN);
}

/// A manager accepts the same command line twice, and only if there is a word.
void checkManagers(int argc, char** argv) {
    for (const auto& manager : Korvel::managers) {
        const bool accepts = manager->detectKeywords(argc, argv);
        require(!accepts || argc > 1, "a manager needs a word");
        require(accepts == manager->detectKeywords(argc, argv), "looking changes nothing");
    }
}

/// Follows the words of a collection. One that would begin is not run: it would write files.
void checkCollection(int argc, char** argv) {
    Korvel::CoverageMasks masks = Korvel::noCoverage();
    const Korvel::CoverageMasks full = Korvel::fullCoverage();
    bool refused = false;
    for (int index = 1; index < argc; ++index) {
        const Korvel::CollectionKeyword* const keyword = Korvel::findCollectionKeyword(argv[index]);
        refused = refused || keyword == nullptr;
        if (keyword != nullptr) {
            applyCoverage(*keyword, masks);
        }
    }
    for (const auto& [id, mask] : masks) {
        require((mask & ~full.at(id)) == 0, "a keyword selects what exists");
    }
    require(!refused || !Korvel::CollectorMgr().resolveRequest(argc, argv), "an unknown word is refused");
}

/// New actions each time, because some keep their arguments.
void runAction(int argc, char** argv) {
    Korvel::ActionMgr actions;
    if (!actions.detectKeywords(argc, argv)) {
        return;
    }
    try {
        actions.resolveRequest(argc, argv);
    } catch (const std::out_of_range& number) {
        require(*number.what() != '\0', "a refusal has a text");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    CommandLine line(Fuzz::FuzzInput(input.textUntil('\0')));
    const Fuzz::FakeKernel kernel(input);
    const Fuzz::QuietConsole console;
    if (Korvel::managers.empty()) {
        Korvel::registerManagers();
    }
    resetOptions();
    const int before = line.argc();
    if (Korvel::consumeCommonOptions(line.argc(), line.argv()) == Korvel::OptionsResult::helpRequested) {
        Korvel::printUsage(line.argc(), line.argv());
        return 0;
    }
    require(line.argc() >= 1 && line.argc() <= before, "options are taken out");
    require(line.argv()[line.argc()] == nullptr, "a null pointer ends the arguments");
    checkManagers(line.argc(), line.argv());
    checkCollection(line.argc(), line.argv());
    runAction(line.argc(), line.argv());
    return 0;
}
