#pragma once

#include <string>

/// Blocks a shell script until the test opens the gate.
class Gate {
public:
    /// Shell lines that wait at the gate.
    static std::string script();

    /// Waits until a script has reached the gate.
    static void await();

    static void open();
};
