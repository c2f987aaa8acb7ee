#pragma once

#include <string>

#include "Configuration.hpp"
#include "SimpleAction.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// "resetqosstats": asks each selected dispatcher instance, by UDP, to clear its QoS statistics, and prints
/// the replies.
class ResetQoSStatsAction : public SimpleAction {
public:
    ResetQoSStatsAction() = default;
    ResetQoSStatsAction(const ResetQoSStatsAction&) = delete;
    ResetQoSStatsAction& operator=(const ResetQoSStatsAction&) = delete;
    ResetQoSStatsAction(ResetQoSStatsAction&&) = delete;
    ResetQoSStatsAction& operator=(ResetQoSStatsAction&&) = delete;
    ~ResetQoSStatsAction() override;

    std::string getKeyword() override;

    /// Returns false at the first instance that does not reply; later instances are not asked. A reply of
    /// only the end marker counts as no reply, but is not reported.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// Binds the socket to its fixed port on any local address.
    bool initialize();

    /// Returns 0, or reports the failure to send and returns -1.
    int sendCleanStatsReq(const Configuration::Config& config);

    /// Prints replies until the end marker arrives, 1.5 s pass without a reply, or 7.5 s pass in total.
    /// Returns true if there was at least one reply.
    bool waitForResp(const Configuration::DispatcherInstance& instance);

private:
    bool receiveText(std::string& text);

    Base::UniqueFd socketFd;
    const std::string keyword = "resetqosstats";  // also the text of the request
};

}  // namespace Korvel
