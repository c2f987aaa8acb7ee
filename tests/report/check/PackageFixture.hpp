#pragma once

#include <string>
#include <string_view>

#include "Package.hpp"

namespace Report::Testing {

/// A package as the loader leaves it, of a board on which nothing is wrong. The tests change it.
class PackageFixture {
public:
    /// A package of pkg-sup: both dispatchers, all collectors and the Linux logs.
    PackageFixture();

    /// Gives a member this text. A member that is not there is added. `name` is the part's.
    void write(const std::string& name, std::string_view text);
    /// The same with a text of `size` bytes, as the loader leaves it if it does not keep texts.
    void writeLarge(const std::string& name, std::uint64_t size, char last = '\n');
    void remove(const std::string& name);
    /// Removes a folder with all its members.
    void removeFolder(const std::string& folder);
    /// Makes a member older than the others.
    void age(const std::string& name, int seconds);
    /// Removes a process from the listing.
    void kill(const std::string& process);
    /// Adds a sidecar with this command and standard error.
    void ran(const std::string& command, const std::string& standardError);

    Part& part(const std::string& name);
    bool has(const std::string& name) const;

    /// A line for each part that is expected and not present: NAME: STATE, CERTAINTY: CAUSE. Then the
    /// verdict.
    std::string judged(std::string_view keywords = {}) const;

    Package package;
};

/// The text of a dispatcher's reply, or of a state file.
std::string counters(const std::string& dispatcher, const std::string& title);

/// The dump of a NetFP process.
std::string dump(const std::string& process);

}  // namespace Report::Testing
