#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "PortActionFixture.hpp"
#include "UniqueFd.hpp"

/// An action with a NetFP master that is missing or does not answer.
class MasterActionFixture : public PortActionFixture {
protected:
    void TearDown() override;

    /// The master does not answer. The action has a short time-out.
    static void givenSilence();
    /// The master is missing.
    static void givenNoMaster();
    /// The master never reads.
    void givenDeafMaster();
    /// The master never reads, and its queue is full.
    void givenFullMaster();
    /// The action cannot bind its own socket.
    static void givenNoClientSocket();

    // The errors of the channel to the master.
    static constexpr const char* refused = "Response from Server was not successful.\n";
    static constexpr const char* noMaster =
        "Failed to Send to Master Socket \"/tmp/nobody\": 2: No such file or directory\n";
    static constexpr const char* noRoom =
        "Failed to Send to Master Socket \"/tmp/deaf\": 11: Resource temporarily unavailable\n";
    static constexpr const char* noClientSocket =
        "Failed to Bind to Client Socket: 2: No such file or directory\n";

    /// The verbose lines of the channel when it connects.
    static constexpr const char* connecting =
        "Creating Socket for Client\n"
        "Binding to Client Socket \"/tmp/Korvel\"\n";

    /// The same for a response to a request.
    static std::string received(const std::string& request);

    /// The requests that the master received, as soon as there are at least `count`. They are complete, but
    /// their identifiers are set to zero.
    std::vector<std::string> requestsWithoutIdentifiers(std::size_t count = 0) const;

private:
    Base::UniqueFd deaf;
};
