#pragma once

#include <istream>
#include <sstream>
#include <string>
#include <unordered_map>

/// The board's type of SFN deployment.
enum SFNDeploymentType : int { sfnDeploymentNone = 0, sfnDeploymentMaster = 1, sfnDeploymentAntenna = 2 };

/// Named values of dispatcher instances, which interfaces pass as int.
enum DispatcherType : int { dispatcherTypeIWF = 0, dispatcherTypeSFN = 1 };

bool fileExists(const std::string& path);

/// The board's private configuration: the `key=value` lines of a file, which a secured board ignores, and
/// properties of the platform. Nothing in it fails: missing or malformed values get their defaults.
class Config {
public:
    /// Reads the configuration file at `path` and queries the platform.
    explicit Config(const std::string& path);

    int getDebugLvl() const { return debugLvl; }
    bool isL2SCTEnv() const { return l2SCTEnv; }
    SFNDeploymentType getSFNDeploymentType() const { return sfnDeploymentType; }

    bool shouldStartIWF() const;
    bool shouldStartSFN() const;
    bool shouldCollectLogOnExit() const;

    /// Returns the path of an instance's deployment configuration: the value of its key in the file or, if
    /// there is none, the default of the deployment type. Returns an empty string if the deployment type has
    /// no such instance. `type` is a DispatcherType.
    std::string getDeploymentConfigFile(int type) const;

    /// Returns the private replacement of an executable, "/rom/private/NAME", if the board is not secured and
    /// that file is executable; otherwise `executablePath`.
    static std::string checkForPrivate(const std::string& executablePath);

    // The steps of construction.

    /// Parses each line of the file at `path` that is neither empty nor a comment. A missing file counts as
    /// empty.
    void parseConfig(const std::string& path);

    /// Stores the entry of a line `key=value` and replaces an earlier entry of the key. Returns false if the
    /// key or the value is missing.
    bool parseLine(const std::string& line);

    /// Reads the text up to the next '=' or the end of the line, without surrounding white space. At the end
    /// of the line, returns false and an empty `out`.
    static bool getEntry(std::istringstream& stream, std::string& out);

    /// Determines the type of SFN deployment from the platform's files.
    void initSFNDeploymentType();

    /// Returns the deployment type that the first word of `stream` names.
    static SFNDeploymentType parseSFNType(std::istream& stream);

    static bool fileIsEmpty(std::istream& stream);
    static bool isExecutable(const std::string& path);

private:
    using Entries = std::unordered_map<std::string, std::string>;

    void readDebugLvl();
    void detectL2SCTEnv();
    /// Returns the value of `key`, or null.
    const std::string* find(const std::string& key) const;

    Entries entries;
    SFNDeploymentType sfnDeploymentType = sfnDeploymentNone;
    int debugLvl = 0;
    bool l2SCTEnv = false;
};
