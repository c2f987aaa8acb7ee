#pragma once

#include <memory>
#include <string>
#include <vector>

#include "IManager.hpp"
#include "SimpleAction.hpp"

namespace Korvel {

/// Runs the action whose keyword is the first argument.
class ActionMgr : public IManager {
public:
    /// Creates the actions in the order of look-up and of the help text.
    ActionMgr();

    bool detectKeywords(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;
    /// Requires a command line that detectKeywords() accepted. Passes on exceptions of the action.
    bool resolveRequest(int argc, char** argv) override;

private:
    /// Returns the first action with this keyword, or null.
    SimpleAction* find(const std::string& keyword) const;

    std::vector<std::unique_ptr<SimpleAction>> actions;
};

}  // namespace Korvel
