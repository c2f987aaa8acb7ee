#pragma once

#include <string>
#include <vector>

#include "Board.hpp"

/// Each record of the NetFP master without the request's identifier, because that differs in each run.
inline std::vector<std::string> receivedByMaster() {
    std::vector<std::string> records = Boardsim::Board::received("netfp_master");
    for (std::string& record : records) {
        record.erase(8, 8);
    }
    return records;
}
