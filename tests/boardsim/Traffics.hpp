#pragma once

#include <memory>

#include "LiveTraffic.hpp"

/// For a board on which nothing changes.
inline std::shared_ptr<Boardsim::LiveTraffic> noTraffic() {
    return std::make_shared<Boardsim::LiveTraffic>(Boardsim::Scenario());
}
