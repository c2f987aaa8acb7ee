#pragma once

#include "UniqueFd.hpp"

/// Holds up forked processes until the test lets them all go at once, or ends. Every process that is
/// forked while the gate is there either passes it or ends.
class Gate {
public:
    Gate();

    /// In a child: waits until the gate is open in all other processes.
    void pass();
    void open() { held = {}; }

private:
    Base::UniqueFd waiting;
    Base::UniqueFd held;  ///< the gate is open when no process has this any more
};
