#pragma once

#include <string>

namespace Korvel {

/// A one-shot operation on the fast path, selected by a keyword.
class SimpleAction {
public:
    SimpleAction() = default;
    SimpleAction(const SimpleAction&) = delete;
    SimpleAction& operator=(const SimpleAction&) = delete;
    SimpleAction(SimpleAction&&) = delete;
    SimpleAction& operator=(SimpleAction&&) = delete;
    virtual ~SimpleAction();

    virtual std::string getKeyword() = 0;

    /// Runs the operation. `argv[1]` is the keyword, followed by the operation's arguments. Returns false on
    /// failure, which is already reported. Throws std::out_of_range, with the message for the operator, if a
    /// numeric argument is out of the accepted range.
    virtual bool run(int argc, char** argv) = 0;

    /// Prints the operation's part of the help text on standard output.
    virtual void printHelpMsg(const std::string& indent, const std::string& programName) = 0;
};

}  // namespace Korvel
