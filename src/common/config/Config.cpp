#include "Config.hpp"

#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include <unistd.h>

#include "BoardSecurity.hpp"
#include "FileAccess.hpp"
#include "IsolatedCpus.hpp"
#include "Log.hpp"
#include "Number.hpp"
#include "TextInput.hpp"
#include "Trim.hpp"

using Korvel::inputFrom;
using Korvel::logf;

namespace {

constexpr std::size_t expectedEntries = 10;
constexpr Korvel::ReadingRules configurationRules{.sizeLimit = 1U << 20U};
constexpr unsigned l2SCTIsolatedCpus = 0b1110;

const std::string privateDir = "/rom/private";
const std::string antennaFlagFile = "/rom/private/is_ant";
const std::string masterFlagFile = "/rom/private/is_master";
const std::string deploymentTypeFile = "/rom/config/deployment_type";

/// Paths of the deployment configuration of one dispatcher instance.
struct DeploymentConfig {
    DispatcherType instance;
    const char* overrideKey;
    std::array<const char*, 3> files;  // by SFNDeploymentType
};

constexpr std::array deploymentConfigs{
    DeploymentConfig{
        dispatcherTypeIWF, "iwfDeploymentCfgPath", {"/etc/QEL_IWF.cfg", "/etc/SFN_Master_IWF.cfg", ""}},
    DeploymentConfig{dispatcherTypeSFN,
                     "sfnDeploymentCfgPath",
                     {"", "/etc/SFN_Master_PhyProxy.cfg", "/etc/SFN_ANT_PhyClient.cfg"}},
};

/// Returns the contents of a file, or nothing if it cannot be opened. After a read error, returns what was
/// read and reports nothing. Reports a file system that times out and a file that is too large.
std::optional<std::string> readConfiguration(const std::string& path) {
    std::string content;
    const Korvel::FileReading reading = Korvel::readFile(path, content, configurationRules);
    if (reading.error == ETIMEDOUT || reading.cut) {
        Korvel::reportReading(path, reading, configurationRules);
    }
    return reading.opened ? std::optional(std::move(content)) : std::nullopt;
}

}  // namespace

bool fileExists(const std::string& path) {
    return Korvel::isAccessible(path, F_OK);
}

Config::Config(const std::string& path) : entries(expectedEntries) {
    if (!isBoardSecured()) {
        parseConfig(path);
    }
    readDebugLvl();
    detectL2SCTEnv();
    initSFNDeploymentType();
}

bool Config::shouldStartIWF() const {
    return sfnDeploymentType != sfnDeploymentAntenna;
}

bool Config::shouldStartSFN() const {
    return sfnDeploymentType != sfnDeploymentNone;
}

bool Config::shouldCollectLogOnExit() const {
    const std::string* const disabled = find("doNotCollectLogOnExit");
    return disabled == nullptr || *disabled != "1";
}

std::string Config::getDeploymentConfigFile(int type) const {
    for (const DeploymentConfig& config : deploymentConfigs) {
        if (config.instance == type) {
            const std::string* const path = find(config.overrideKey);
            return path != nullptr ? *path : config.files.at(static_cast<std::size_t>(sfnDeploymentType));
        }
    }
    return {};
}

std::string Config::checkForPrivate(const std::string& executablePath) {
    const std::size_t slash = executablePath.rfind('/');
    if (isBoardSecured() || slash == std::string::npos) {
        return executablePath;
    }
    const std::string candidate = privateDir + executablePath.substr(slash);
    if (!fileExists(candidate)) {
        return executablePath;
    }
    if (!isExecutable(candidate)) {
        logf(Korvel::logError, "Private %s found but missing executable flag", candidate.c_str());
        return executablePath;
    }
    return candidate;
}

void Config::parseConfig(const std::string& path) {
    if (!fileExists(path)) {
        return;
    }
    logf(Korvel::logInformation, "Opening '%s' file", path.c_str());
    const std::optional<std::string> content = readConfiguration(path);
    if (!content) {
        logf(Korvel::logError, "Error while opening '%s' file", path.c_str());
        return;
    }
    std::istringstream lines = inputFrom(*content);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.front() != '#') {
            parseLine(line);
        }
    }
}

bool Config::parseLine(const std::string& line) {
    std::istringstream stream = inputFrom(line);
    std::string key;
    std::string value;
    const bool haveKey = getEntry(stream, key);
    const bool haveValue = getEntry(stream, value);
    if (key.empty() || value.empty()) {
        logf(Korvel::logWarning, "Trying to add incomplete entry: '%s','%s'", key.c_str(), value.c_str());
        return false;
    }
    logf(Korvel::logDebug, "Adding config entry [%s, %s]", key.c_str(), value.c_str());
    entries[key] = value;
    return haveKey && haveValue;
}

bool Config::getEntry(std::istringstream& stream, std::string& out) {
    out.clear();
    if (!std::getline(stream, out, '=')) {
        logf(Korvel::logWarning, "Could not get entry from: %s", stream.str().c_str());
        return false;
    }
    trim(out);
    return true;
}

void Config::readDebugLvl() {
    const std::string* const level = find("debugCfg");
    if (level != nullptr && Korvel::parseNumber(*level, debugLvl) != Korvel::NumberError::none) {
        logf(Korvel::logError, "Parsing debugCfg failed");
    }
}

void Config::detectL2SCTEnv() {
    const std::string* const forced = find("L2SCTEnv");
    if (forced != nullptr && *forced == "1") {
        logf(Korvel::logInformation, "L2 SCT environment forced by config file");
        l2SCTEnv = true;
    }
    if (Korvel::getIsolatedCpuMask() == l2SCTIsolatedCpus) {
        logf(Korvel::logInformation, "Detected L2 SCT environment in isolcpus");
        l2SCTEnv = true;
    }
}

void Config::initSFNDeploymentType() {
    if (fileExists(antennaFlagFile)) {
        sfnDeploymentType = sfnDeploymentAntenna;
    } else if (fileExists(masterFlagFile)) {
        sfnDeploymentType = sfnDeploymentMaster;
    } else if (fileExists(deploymentTypeFile)) {
        std::istringstream content = inputFrom(readConfiguration(deploymentTypeFile).value_or(""));
        sfnDeploymentType = fileIsEmpty(content) ? sfnDeploymentNone : parseSFNType(content);
    }
}

SFNDeploymentType Config::parseSFNType(std::istream& stream) {
    std::string word;
    stream >> word;
    if (word == "8core_SfnAnt") {
        return sfnDeploymentAntenna;
    }
    return word == "6core_SfnMaster" ? sfnDeploymentMaster : sfnDeploymentNone;
}

bool Config::fileIsEmpty(std::istream& stream) {
    return stream.peek() == std::istream::traits_type::eof();
}

bool Config::isExecutable(const std::string& path) {
    return Korvel::isAccessible(path, X_OK);
}

const std::string* Config::find(const std::string& key) const {
    const auto entry = entries.find(key);
    return entry == entries.end() ? nullptr : &entry->second;
}
