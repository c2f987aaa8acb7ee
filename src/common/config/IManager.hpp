#pragma once

#include <string>

namespace Korvel {

/// A request manager: one family of jobs. The driver asks each in turn whether the command line is its own,
/// then has the first that says so carry the request out: resolveRequest(), then run().
/// The command lines passed in hold the program's name and whatever is no common option.
class IManager {
public:
    explicit IManager(const std::string& name);
    IManager(const IManager&) = delete;
    IManager& operator=(const IManager&) = delete;
    IManager(IManager&&) = delete;
    IManager& operator=(IManager&&) = delete;
    virtual ~IManager();

    /// Whether the arguments carry one of this manager's keywords.
    virtual bool detectKeywords(int argc, char** argv) = 0;

    /// Prints this manager's block of the help text on standard output.
    virtual void printHelpMsg(const std::string& indent, const std::string& programName) = 0;

    /// Reads the request out of the arguments; managers of one-shot jobs carry it out as well. False, with
    /// the reason already reported, fails the run. The base has nothing to resolve.
    virtual bool resolveRequest(int argc, char** argv);

    /// Does the job that lasts. False fails the run. The base has nothing to do.
    virtual bool run();

    std::string getName() const;

private:
    const std::string name;
};

}  // namespace Korvel
