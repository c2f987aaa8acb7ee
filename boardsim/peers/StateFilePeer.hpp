#pragma once

#include <memory>

#include "IntervalTimer.hpp"
#include "Peer.hpp"
#include "QosStatistics.hpp"
#include "StateTree.hpp"

namespace Boardsim {

/// Keeps a dispatcher's state files up to date while there is traffic.
class StateFilePeer : public Peer {
public:
    StateFilePeer(StateTree stateTree, std::shared_ptr<const QosStatistics> qosStatistics,
                  const TrafficClock& clock);

    int descriptor() const override { return timer.descriptor(); }

    /// If a file cannot be replaced, for example because the disk is full, leaves it as it was.
    void serve() override;

private:
    StateTree tree;
    std::shared_ptr<const QosStatistics> statistics;
    IntervalTimer timer;
};

}  // namespace Boardsim
