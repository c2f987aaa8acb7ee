#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Package.hpp"

namespace Report {

/// What a process listing tells about a process.
enum class Presence : std::uint8_t {
    unknown,    ///< there is no listing, or it is not whole
    running,    ///< a process of this name
    defunct,    ///< it has died, and its parent has not noticed
    mentioned,  ///< only inside the command line of another process
    absent,
};

/// The output of ps among the Linux logs, in any of its usual forms: a heading with PID and COMMAND or CMD,
/// then a line for each process.
class ProcessListing {
public:
    /// Finds the listing of a package.
    explicit ProcessListing(const Package& package);

    Presence presenceOf(std::string_view process) const;
    /// The line of the process, or the heading if no line names it.
    Evidence evidenceFor(std::string_view process) const;
    /// The part that holds the listing, or null.
    const Part* part() const { return source; }

private:
    struct Row {
        std::string line;
        std::size_t command = 0;  // where the command line begins
        bool defunct = false;
    };

    bool parse(const Part& part);
    const Row* find(std::string_view process, Presence& presence) const;

    const Part* source = nullptr;
    std::string heading;
    std::vector<Row> rows;
};

}  // namespace Report
