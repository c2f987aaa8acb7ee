#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "AddMulticastMACAction.hpp"
#include "MasterActionFixture.hpp"

/// "addmulticastmac" and the NetFP master that adds the filter.
class AddMulticastMACFixture : public MasterActionFixture {
protected:
    using Words = std::vector<std::string>;

    /// A filter as in a request.
    struct Filter {
        std::string mac{"\x01\x00\x5e\x00\x00\x01", 6};
        std::string interface = "eth0";
        std::uint16_t vlan = 0;
        std::uint32_t ignoresVlan = 1;
    };

    /// The master answers every request with this error code.
    void givenMasterResponds(std::int32_t errorCode);

    /// Runs the action with these words after its keyword.
    bool add(const Words& arguments);

    /// Runs the action, which must fail, and compares its output.
    void expectFailure(const Words& arguments, const std::string& message);

    /// A request for a filter as requestsWithoutIdentifiers() returns it.
    static std::string request(const Filter& filter);

    Korvel::AddMulticastMACAction action;
};
