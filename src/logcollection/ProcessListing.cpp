#include "ProcessListing.hpp"

#include <utility>

#include "Number.hpp"
#include "TextInput.hpp"
#include "Words.hpp"

namespace Korvel {
namespace {

constexpr int noPid = 0;
constexpr unsigned pidColumn = 2;  // counted from 1

}  // namespace

ProcessIds parseProcessListing(std::string listing, const std::vector<std::string>& names) {
    ProcessIds pids;
    std::istringstream lines = inputFrom(std::move(listing));
    for (std::string line; std::getline(lines, line);) {
        const std::string column = getNthTokenFromString(line, pidColumn);
        for (const std::string& name : names) {
            if (line.find(name) != std::string::npos && !column.empty()) {
                int pid = noPid;
                static_cast<void>(parseNumber(column, pid));
                pids[name] = pid;
            }
        }
    }
    return pids;
}

}  // namespace Korvel
