#pragma once

#include <string>

namespace Korvel {

/// A one-shot operation on the fast path that a keyword names.
class SimpleAction {
public:
    SimpleAction() = default;
    SimpleAction(const SimpleAction&) = delete;
    SimpleAction& operator=(const SimpleAction&) = delete;
    SimpleAction(SimpleAction&&) = delete;
    SimpleAction& operator=(SimpleAction&&) = delete;
    virtual ~SimpleAction();

    virtual std::string getKeyword() = 0;

    /// Carries the operation out. `argv[1]` is the keyword, the operation's own arguments follow. False,
    /// with the reason already reported, is a failure. Throws std::out_of_range where a number on the command
    /// line is one that the operation cannot take at all; what() is the message for the operator.
    virtual bool run(int argc, char** argv) = 0;

    /// Prints the operation's part of the help text on standard output.
    virtual void printHelpMsg(const std::string& indent, const std::string& programName) = 0;
};

}  // namespace Korvel
