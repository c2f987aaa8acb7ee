#pragma once

#include <string>

#include "CollectionFixture.hpp"

/// Packages and their content.
class PackageFixture : public CollectionFixture {
protected:
    static constexpr const char* gathering = "Command: fp_linux_log_collect /tmp/korvel 2> /dev/null ";
    static constexpr const char* noPostMortem =
        "Command: cp /ffs/run/logs/netfp_logs_post_mortem.tgz /tmp/korvel 2> /dev/null exited with error, "
        "exit code: 1\n";

    /// The path of the package "netfp_logs" + `suffix`.
    static std::string package(const std::string& suffix);

    /// The names that tar lists for a package, in its order and sorted.
    static std::string listingOf(const std::string& path);
    static Words membersOf(const std::string& path);

    /// Every file in a package.
    static Files filesIn(const std::string& path);
};
