#include "StateFilePeer.hpp"

#include <system_error>
#include <utility>

namespace Boardsim {

StateFilePeer::StateFilePeer(StateTree stateTree, std::shared_ptr<const QosStatistics> qosStatistics,
                             const TrafficClock& clock)
    : tree(std::move(stateTree)), statistics(std::move(qosStatistics)), timer(clock.untilNextSecond()) {
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
