// Measures the idle cost of a long-running job and compares it with limits. Must run on a simulated board.
// Exits 1 if a figure exceeds its limit.

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <string_view>

#include "Figures.hpp"
#include "IdleCost.hpp"

namespace {

struct Job {
    std::string_view keyword;
    std::chrono::seconds period;
    double processorMs;  ///< limit per round
    double memoryMiB;    ///< limit
};

constexpr std::array jobs{
    Job{"archive", std::chrono::seconds(5), 1, 8},
    Job{"supervision", std::chrono::seconds(4), 1, 6},
};

bool reportJob(const Job& job) {
    const std::string command = "korvel " + std::string(job.keyword);
    const IdleCost cost = measureIdleCost({"korvel", std::string(job.keyword)}, job.period);
    const bool quick =
        report({command + ", processor time a round", cost.processorMsPerRound, job.processorMs, "ms"});
    const bool small = report({command + ", private and file memory", cost.memoryMiB, job.memoryMiB, "MiB"});
    return quick && small;
}

}  // namespace

int main(int argc, char** argv) {
    const auto* const job =
        std::ranges::find(jobs, std::string_view(argc == 2 ? argv[1] : ""), &Job::keyword);
    if (job == jobs.end()) {
        std::fprintf(stderr, "usage: korvel_idle_bench archive|supervision\n");
        return 2;
    }
    try {
        return reportJob(*job) ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
