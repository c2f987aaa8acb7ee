// The platform's configuration. The input is three texts with zero bytes between them: the deployment type,
// the kernel's command line, fpdispatcher.conf.

#include <sstream>
#include <string>

#include "Config.hpp"
#include "FakeKernel.hpp"
#include "FuzzTarget.hpp"
#include "IsolatedCpus.hpp"
#include "QuietConsole.hpp"
#include "ScratchFile.hpp"
#include "VerboseMode.hpp"

namespace {

using Fuzz::require;

constexpr unsigned allCpus = 0b1111;

void checkDeployment(std::string_view text) {
    std::istringstream file{std::string(text)};
    const bool empty = Config::fileIsEmpty(file);
    require(empty == text.empty(), "only an empty file is empty");
    const SFNDeploymentType type = Config::parseSFNType(file);
    require(type == sfnDeploymentNone || text.find("core_Sfn") != std::string_view::npos, "a type is named");
}

void checkIsolatedCpus(const std::string& commandLine) {
    const unsigned mask = Korvel::parseIsolatedCpus(commandLine);
    require((mask & ~allCpus) == 0, "only the CPUs 0 to 3 count");
    require(mask == 0 || commandLine.find("isolcpus=") != std::string::npos, "the list has a name");
}

void checkFile(std::string_view text) {
    static const Fuzz::ScratchFile file("fpdispatcher.conf");
    file.fill(text);
    const Config config(file.path());
    require(!config.isL2SCTEnv() || text.find("L2SCTEnv") != std::string_view::npos, "a key has a name");
    require(config.shouldStartIWF() || config.shouldStartSFN(), "a dispatcher runs");
    for (const int type : {-1, 0, 1, 2}) {
        const std::string path = config.getDeploymentConfigFile(type);
        require(path.find('\n') == std::string::npos, "a value is one line");
    }
    static_cast<void>(config.shouldCollectLogOnExit());
    static_cast<void>(config.getDebugLvl());
}

/// Whether an entry was stored says the same as a second look at the line.
void checkLines(std::string_view text) {
    Config config("");
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        const bool stored = config.parseLine(line);
        require(!stored || line.find('=') != std::string::npos, "an entry has a sign between key and value");
        require(config.parseLine(line) == stored, "a line can replace its own entry");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    Fuzz::FuzzInput nothing("");
    const Fuzz::FakeKernel kernel(nothing);
    const Fuzz::QuietConsole console;
    checkDeployment(input.textUntil('\0'));
    checkIsolatedCpus(std::string(input.textUntil('\0')));
    const std::string_view file = input.rest();
    Korvel::setVerboseMode(file.size() % 2 != 0);  // then each line is logged
    checkLines(file);
    checkFile(file);
    return 0;
}
