#pragma once

#include <string>

#include "Configuration.hpp"
#include "SimpleAction.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// "resetqosstats": has each selected dispatcher instance clear its QoS statistics, by UDP, and prints what
/// it answers.
class ResetQoSStatsAction : public SimpleAction {
public:
    ResetQoSStatsAction() = default;
    ResetQoSStatsAction(const ResetQoSStatsAction&) = delete;
    ResetQoSStatsAction& operator=(const ResetQoSStatsAction&) = delete;
    ResetQoSStatsAction(ResetQoSStatsAction&&) = delete;
    ResetQoSStatsAction& operator=(ResetQoSStatsAction&&) = delete;
    ~ResetQoSStatsAction() override;

    std::string getKeyword() override;

    /// False with the first instance that answers nothing; later ones are not asked. One that answers with
    /// the end marker alone is not reported.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// Binds the socket to its fixed port on any local address.
    bool initialize();

    /// 0, or -1 where the request could not be sent, which is reported.
    int sendCleanStatsReq(const Configuration::Config& config);

    /// Prints the texts that arrive, up to the end marker or until 1.5 s pass without one or 7.5 s in all.
    /// True when there was one at least.
    bool waitForResp(const Configuration::DispatcherInstance& instance);

private:
    bool receiveText(std::string& text);

    Base::UniqueFd socketFd;
    const std::string keyword = "resetqosstats";  // the request's text, too
};

}  // namespace Korvel
