#pragma once

#include <string>

/// Holds a shell script up until the test lets it go on.
class Gate {
public:
    /// Lines of shell that stop at the gate.
    static std::string script();

    /// Returns once a script has come to the gate.
    static void await();

    static void open();
};
