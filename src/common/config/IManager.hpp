#pragma once

#include <string>

namespace Korvel {

/// A request manager: handles one group of jobs. main() asks the managers in turn whether they accept the
/// command line. The first that accepts it executes the request: resolveRequest(), then run(). Command lines
/// contain the program name and all arguments except the common options.
class IManager {
public:
    explicit IManager(const std::string& name);
    IManager(const IManager&) = delete;
    IManager& operator=(const IManager&) = delete;
    IManager(IManager&&) = delete;
    IManager& operator=(IManager&&) = delete;
    virtual ~IManager();

    /// Returns true if the arguments contain one of this manager's keywords.
    virtual bool detectKeywords(int argc, char** argv) = 0;

    /// Prints this manager's part of the help text on standard output.
    virtual void printHelpMsg(const std::string& indent, const std::string& programName) = 0;

    /// Parses the request; managers of one-shot jobs also execute it. Returns false on failure, which is
    /// already reported; the program then exits with status 1. The default does nothing and returns true.
    virtual bool resolveRequest(int argc, char** argv);

    /// Executes a continuous job. If it returns false, the program exits with status 1. The default does
    /// nothing and returns true.
    virtual bool run();

    std::string getName() const;

private:
    const std::string name;
};

}  // namespace Korvel
