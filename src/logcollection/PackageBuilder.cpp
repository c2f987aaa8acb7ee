#include "PackageBuilder.hpp"

#include <algorithm>
#include <array>
#include <csignal>

#include "CollectionKeywords.hpp"
#include "Console.hpp"
#include "Shell.hpp"
#include "Timestamp.hpp"

namespace Korvel {
namespace {

constexpr const char* postMortemSuffix = "_post_mortem.tgz";

struct PackageKind {
    unsigned modeBit;
    const char* suffix;
    bool withPostMortemPackage;
};

/// The kinds with a fixed name. If a mask has several, the first one is built.
constexpr std::array packageKinds{
    PackageKind{OutputMode::withoutTimestamp, ".tgz", true},
    PackageKind{OutputMode::supervisor, "_sup.tgz", true},
    PackageKind{OutputMode::postMortem, postMortemSuffix, false},
    PackageKind{OutputMode::shutdown, "_shutdown.tgz", false},
};

/// Makes commands ignore SIGPIPE from construction to destruction. Otherwise, a tar that lists its members is
/// killed if nobody reads the list.
class IgnoreSigpipe {
public:
    IgnoreSigpipe() : previous(std::signal(SIGPIPE, SIG_IGN)) {}
    IgnoreSigpipe(const IgnoreSigpipe&) = delete;
    IgnoreSigpipe& operator=(const IgnoreSigpipe&) = delete;
    IgnoreSigpipe(IgnoreSigpipe&&) = delete;
    IgnoreSigpipe& operator=(IgnoreSigpipe&&) = delete;
    ~IgnoreSigpipe() { std::signal(SIGPIPE, previous); }

private:
    void (*const previous)(int);
};

}  // namespace

PackageBuilder::PackageBuilder(const std::string& workspace, const std::string& basePath)
    : workspaceDir(workspace), packageBasePath(basePath) {
}

void PackageBuilder::build(unsigned outputMask) const {
    const IgnoreSigpipe ignoreSigpipe;
    const auto* const kind =
        std::find_if(packageKinds.begin(), packageKinds.end(),
                     [&](const PackageKind& candidate) { return (candidate.modeBit & outputMask) != 0; });
    if (kind == packageKinds.end()) {
        archive(packageBasePath + "_" + getTimestamp() + ".tgz");
        return;
    }
    if (kind->withPostMortemPackage) {
        copyPostMortemPackage();
    }
    gatherLinuxLogs();
    archive(packageBasePath + kind->suffix);
}

void PackageBuilder::copyPostMortemPackage() const {
    executeCommand("cp " + packageBasePath + postMortemSuffix + " " + workspaceDir + " 2> /dev/null");
}

void PackageBuilder::gatherLinuxLogs() const {
    executeCommand("fp_linux_log_collect " + workspaceDir + " 2> /dev/null");
}

void PackageBuilder::archive(const std::string& packageFile) const {
    const std::string members = " -C " + workspaceDir + "/ ./";
    if (isVerboseMode()) {
        print("Creating ", packageFile, " package...\n");
        executeCommand("/bin/tar -czvf " + packageFile + members);
    } else {
        executeCommand("/bin/tar -czf " + packageFile + members + " 2> /dev/null");
    }
}

}  // namespace Korvel
