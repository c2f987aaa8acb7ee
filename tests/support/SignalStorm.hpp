#pragma once

/// Has a signal arrive at this process every few milliseconds, from construction to destruction. It has a
/// handler, so that it interrupts every call that can be interrupted.
class SignalStorm {
public:
    SignalStorm();
    SignalStorm(const SignalStorm&) = delete;
    SignalStorm& operator=(const SignalStorm&) = delete;
    SignalStorm(SignalStorm&&) = delete;
    SignalStorm& operator=(SignalStorm&&) = delete;
    ~SignalStorm();

    /// How many signals arrived.
    static int count();
};
