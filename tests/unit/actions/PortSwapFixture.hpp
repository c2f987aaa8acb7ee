#pragma once

#include <map>
#include <string>
#include <vector>

#include "MasterActionFixture.hpp"
#include "PortSwapAction.hpp"

/// "portswap" and a NetFP master that renames.
class PortSwapFixture : public MasterActionFixture {
protected:
    using Lines = std::vector<std::string>;

    enum class Rename { refused, ignored, unanswered };

    /// The master knows these interfaces and handles all requests except the renames with these numbers,
    /// counted from 1. It reports success for a rename that it ignores.
    void givenRenamingMaster(const std::map<std::string, int>& ports,
                             const std::map<int, Rename>& exceptions = {});

    /// The same, with eth0 at port 1 and eth1 at port 2.
    void givenRenamingMaster(const std::map<int, Rename>& exceptions = {});

    /// The master exits after that many answers.
    void givenMasterThatLeavesAfter(std::size_t requestCount);

    /// Runs the action with these words after its keyword.
    bool swap(const std::vector<std::string>& interfaces);

    /// Runs the action with eth0 and eth1, which must fail, and compares its output.
    void expectFailure(const std::string& message);

    /// A request for the port of `name`, and a rename, as requestsWithoutIdentifiers() returns them.
    static std::string lookUp(const std::string& name);
    static std::string rename(const std::string& currentName, const std::string& newName);

    Korvel::PortSwapAction action;
};
