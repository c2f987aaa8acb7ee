#pragma once

#include <string>

#include "Process.hpp"

/// The NetFP master's dump without its title and end.
inline std::string masterDump() {
    const std::string dump = korvel({"print", "master"}).out;
    const std::string title = "interfaces:\n";
    const std::size_t start = dump.find(title) + title.size();
    return dump.substr(start, dump.find("</netfp_master_dump>") - start);
}
