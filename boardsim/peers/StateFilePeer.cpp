#include "StateFilePeer.hpp"

#include <chrono>
#include <system_error>
#include <utility>

namespace Boardsim {

StateFilePeer::StateFilePeer(StateTree stateTree, std::shared_ptr<const QosStatistics> qosStatistics,
                             const TrafficClock& clock)
    : tree(std::move(stateTree)),
      statistics(std::move(qosStatistics)),
      timer(clock.untilNextSecond(), std::chrono::seconds(1)) {
}

void StateFilePeer::serve() {
    timer.passed();
    try {
        tree.refresh();
        statistics->refresh();
    } catch (const std::system_error&) {
        return;  // the next second tries again
    }
}

}  // namespace Boardsim
