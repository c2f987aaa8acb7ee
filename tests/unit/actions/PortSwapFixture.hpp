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

    /// The master knows these interfaces and does what it is asked for, except for the renames with these
    /// numbers, counted from 1. One that it ignores it calls done.
    void givenRenamingMaster(const std::map<std::string, int>& ports,
                             const std::map<int, Rename>& exceptions = {});

    /// The same, with eth0 at port 1 and eth1 at port 2.
    void givenRenamingMaster(const std::map<int, Rename>& exceptions = {});

    /// The master is gone once it has answered that many requests.
    void givenMasterThatLeavesAfter(std::size_t requestCount);

    /// Runs the action with these words behind its keyword.
    bool swap(const std::vector<std::string>& interfaces);

    /// Runs the action with eth0 and eth1, which fails, and compares what it says.
    void expectFailure(const std::string& message);

    /// What requestsWithoutIdentifiers() shows of a request for the port of `name`, and of a rename.
    static std::string lookUp(const std::string& name);
    static std::string rename(const std::string& currentName, const std::string& newName);

    Korvel::PortSwapAction action;
};
