#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "PortActionFixture.hpp"
#include "UniqueFd.hpp"

/// An action whose requests reach no NetFP master, or one that does not do its part.
class MasterActionFixture : public PortActionFixture {
protected:
    void TearDown() override;

    /// Nobody answers, and the action does not wait long.
    static void givenSilence();
    /// There is no master where the action looks for it.
    static void givenNoMaster();
    /// The master never reads.
    void givenDeafMaster();
    /// The master never reads, and its queue takes no more.
    void givenFullMaster();
    /// The action has no place for its own socket.
    static void givenNoClientSocket();

    // What the channel to the master reports.
    static constexpr const char* refused = "Response from Server was not successful.\n";
    static constexpr const char* noMaster =
        "Failed to Send to Master Socket \"/tmp/nobody\": 2: No such file or directory\n";
    static constexpr const char* noRoom =
        "Failed to Send to Master Socket \"/tmp/deaf\": 11: Resource temporarily unavailable\n";
    static constexpr const char* noClientSocket =
        "Failed to Bind to Client Socket: 2: No such file or directory\n";

    /// What the channel tells in verbose mode when it connects.
    static constexpr const char* connecting =
        "Creating Socket for Client\n"
        "Binding to Client Socket \"/tmp/Korvel\"\n";

    /// The same for a response to a request.
    static std::string received(const std::string& request);

    /// The requests that the master received, once there are `count` at least: whole, but for the
    /// identifiers, which are zero.
    std::vector<std::string> requestsWithoutIdentifiers(std::size_t count = 0) const;

private:
    Base::UniqueFd deaf;
};
