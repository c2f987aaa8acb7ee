#pragma once

#include <istream>
#include <sstream>
#include <string>
#include <unordered_map>

/// What kind of SFN deployment the board is.
enum SFNDeploymentType : int { sfnDeploymentNone = 0, sfnDeploymentMaster = 1, sfnDeploymentAntenna = 2 };

/// Names for the dispatcher instances, which are plain numbers wherever one is passed.
enum DispatcherType : int { dispatcherTypeIWF = 0, dispatcherTypeSFN = 1 };

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
    /// type; empty where the deployment has no such instance. `type` is a DispatcherType.
    std::string getDeploymentConfigFile(int type) const;

    /// The private replacement of an executable, "/rom/private/NAME", where the board is not secured and
    /// there is an executable one; else `executablePath` itself.
    static std::string checkForPrivate(const std::string& executablePath);

    // The steps of construction.

    /// Takes each line of the file at `path` that is neither empty nor a comment. A file that is not there
    /// has none.
    void parseConfig(const std::string& path);

    /// Stores the entry of a line `key=value`, in place of an earlier one of its key. False where a part of
    /// it is missing.
    bool parseLine(const std::string& line);

    /// The text up to the next '=' or the end of the line, without white space around it. False, with `out`
    /// empty, at the end of the line.
    static bool getEntry(std::istringstream& stream, std::string& out);

    /// Asks the platform for the kind of SFN deployment.
    void initSFNDeploymentType();

    /// What the first word of `stream` says.
    static SFNDeploymentType parseSFNType(std::istream& stream);

    static bool fileIsEmpty(std::istream& stream);
    static bool isExecutable(const std::string& path);

private:
    using Entries = std::unordered_map<std::string, std::string>;

    void readDebugLvl();
    void detectL2SCTEnv();
    /// The value of `key`, or null.
    const std::string* find(const std::string& key) const;

    Entries entries;
    SFNDeploymentType sfnDeploymentType = sfnDeploymentNone;
    int debugLvl = 0;
    bool l2SCTEnv = false;
};
