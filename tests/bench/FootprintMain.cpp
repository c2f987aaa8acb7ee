// Prints a Markdown table of the peak memory of each job. Must run on a simulated board.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "PeakResident.hpp"

namespace {

constexpr unsigned severalRounds = 10;  // seconds, for long-running jobs

const std::vector<Job> jobs = {
    {{"korvel", "--help"}},
    {{"korvel", "getport", "eth1"}},
    {{"korvel", "mirrorport", "enable", "eth0", "eth1"}},
    {{"korvel", "loopbackport", "enable", "eth0"}},
    {{"korvel", "portswap", "eth0", "eth1"}},
    {{"korvel", "addmulticastmac", "01:00:5e:00:00:01", "eth1"}},
    {{"korvel", "-d", "all", "resetqosstats"}},
    {{"korvel", "mem_dump", "0x80000000", "32"}},
    {{"korvel", "mem_dump", "0x80000000", "1048576"}},
    {{"korvel", "desc_dump", "0x80000000", "32"}},
    {{"korvel", "add_interface", "eth4"}},
    {{"korvel", "print", "dlog"}},
    {{"korvel", "-d", "all", "print"}},
    {{"korvel", "-d", "all", "dump"}},
    {{"korvel", "-d", "all", "pkg"}},
    {{"korvel", "-d", "all", "pkg-pm"}},
    {{"korvel", "-d", "all", "pkg-trs"}},
    {{"korvel", "-d", "all", "pkg-sup"}},
    {{"korvel", "-d", "all", "pkg-sdown"}},
    {{"korvel", "-d", "all", "supervision"}, severalRounds},
    {{"korvel", "archive"}, severalRounds},
};

std::string commandLine(const Job& job) {
    std::string line;
    for (const std::string& word : job.command) {
        line += line.empty() ? word : " " + word;
    }
    return line;
}

}  // namespace

int main() {
    constexpr double kiBPerMiB = 1024;
    std::printf("| Job | Peak RSS (MiB) |\n|---|---:|\n");
    try {
        for (const Job& job : jobs) {
            const auto peak = static_cast<double>(peakResidentKiB(job));
            std::printf("| `%s` | %.1f |\n", commandLine(job).c_str(), peak / kiBPerMiB);
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
