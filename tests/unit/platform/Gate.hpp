#pragma once

#include "UniqueFd.hpp"

/// Blocks forked processes until the test opens the gate for all of them. Processes that are forked while the
/// gate exists either pass it or end with the test.
class Gate {
public:
    Gate();

    /// Called in a child. Waits until the gate is open in all other processes.
    void pass();
    void open() { held = {}; }

private:
    Base::UniqueFd waiting;
    Base::UniqueFd held;  ///< the gate is open when no process holds this
};
