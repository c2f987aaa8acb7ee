#pragma once

#include <istream>
#include <sstream>
#include <string>
#include <unordered_map>

/// What kind of SFN deployment the board is.
enum class SFNDeploymentType : int { none = 0, master = 1, antenna = 2 };

enum class DispatcherType : int { IWF = 0, SFN = 1 };

bool fileExists(const std::string& path);

/// The board's private configuration: lines `key=value` of a file that a secured board does not read, and
/// what the platform itself tells. Nothing in it fails: what is missing or malformed takes its default.
class Config {
public:
    /// Reads the configuration file at `path` and asks the platform.
    explicit Config(const std::string& path);

    int getDebugLvl() const { return debugLvl; }
    bool isL2SCTEnv() const { return l2SCTEnv; }
    SFNDeploymentType getSFNDeploymentType() const { return sfnDeploymentType; }

    bool shouldStartIWF() const;
    bool shouldStartSFN() const;
    bool shouldCollectLogOnExit() const;

    /// The path of an instance's deployment configuration: the file's own key for it, else by deployment
    /// type; empty where the deployment has no such instance.
    std::string getDeploymentConfigFile(DispatcherType type) const;

    /// The private replacement of an executable, "/rom/private/NAME", where the board is not secured and
    /// there is an executable one; else `executablePath` itself.
    static std::string checkForPrivate(const std::string& executablePath);

private:
    using Entries = std::unordered_map<std::string, std::string>;

    void parseConfig(const std::string& path);
    bool parseLine(const std::string& line);
    static bool getEntry(std::istringstream& stream, std::string& out);
    void readDebugLvl();
    void detectL2SCTEnv();
    void initSFNDeploymentType();
    static SFNDeploymentType parseSFNType(std::istream& stream);
    static bool fileIsEmpty(std::istream& stream);
    static bool isExecutable(const std::string& path);
    /// The value of `key`, or null.
    const std::string* find(const std::string& key) const;

    Entries entries;
    SFNDeploymentType sfnDeploymentType = SFNDeploymentType::none;
    int debugLvl = 0;
    bool l2SCTEnv = false;
};
